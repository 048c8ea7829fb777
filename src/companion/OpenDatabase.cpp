#include "companion/OpenDatabase.h"

#include "companion/postgres/PostgresConnection.h"
#include "companion/sqlite/SqliteConnection.h"

namespace kintar::companion {

std::unique_ptr<DatabaseConnection> openDatabase(const std::string& database, DatabaseAccess access,
                                                 const ServerLimits& limits) {
    if (postgres::isConnectionText(database)) {
        return std::make_unique<postgres::PostgresConnection>(
            database, access, postgres::Limits{limits.connect, limits.statement});
    }
    return std::make_unique<sqlite::SqliteConnection>(database, access == DatabaseAccess::ReadOnly
                                                                    ? sqlite::Access::ReadOnly
                                                                    : sqlite::Access::ReadWrite);
}

} // namespace kintar::companion
