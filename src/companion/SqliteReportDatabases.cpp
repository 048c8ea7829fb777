#include "companion/SqliteReportDatabases.h"

#include "companion/DatabaseError.h"
#include "companion/SiteSchema.h"
#include "companion/dialect/Keyword.h"
#include "companion/sqlite/SqliteConnection.h"
#include "server/IgnoringErrors.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace kintar::companion {
namespace {

using dialect::quotedName;

DatabaseError fileError(const std::string& what, const std::string& path) {
    const int reason = errno;
    const ErrorKind kind = reason == ENOSPC || reason == EDQUOT  ? ErrorKind::DiskFull
                           : reason == EROFS || reason == EACCES ? ErrorKind::ReadOnly
                                                                 : ErrorKind::Other;
    return {kind, what + " " + path + ": " + std::strerror(reason)};
}

/// A fresh empty file beside `path` that only this user can read.
std::string makePrivateFile(const std::string& path) {
    std::string name = path + ".XXXXXX";
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0) {
        throw fileError("No file can be made beside", path);
    }
    close(descriptor);
    return name;
}

std::string tableStatement(const ReportTable& table) {
    std::string columns;
    for (const ReportColumn& column : table.columns) {
        columns += (columns.empty() ? "" : ", ") + quotedName(column.name) + ' ' +
                   std::string(declaredType(column.type));
    }
    return "CREATE TABLE " + quotedName(table.name) + " (" + columns + ")";
}

std::string indexStatement(const ReportTable& table) {
    std::string columns;
    for (const std::string& column : table.indexColumns) {
        columns += (columns.empty() ? "" : ", ") + quotedName(column);
    }
    return "CREATE INDEX " + quotedName(table.indexName) + " ON " + quotedName(table.name) + " (" +
           columns + ")";
}

void makeTables(const std::string& file, const std::vector<ReportTable>& tables) {
    sqlite3* opened = nullptr;
    const int code = sqlite3_open_v2(file.c_str(), &opened,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    const sqlite::DatabaseHandle database(opened);
    if (code != SQLITE_OK) {
        throw sqlite::errorOf(database.get(), code);
    }
    sqlite::runPlain(database.get(), "PRAGMA journal_mode=MEMORY");
    sqlite::runPlain(database.get(), "PRAGMA synchronous=OFF");
    for (const ReportTable& table : tables) {
        sqlite::runPlain(database.get(), tableStatement(table));
        sqlite::runPlain(database.get(), indexStatement(table));
    }
}

class SqliteReportDatabase final : public ReportDatabase {
public:
    SqliteReportDatabase(std::string path, const std::vector<ReportTable>& tables)
        : path_(std::move(path)), file_(makePrivateFile(path_)) {
        try {
            makeTables(file_, tables);
            connection_ =
                std::make_unique<sqlite::SqliteConnection>(file_, sqlite::Access::Private);
            connection_->begin();
        } catch (...) {
            unlink(file_.c_str());
            throw;
        }
    }
    SqliteReportDatabase(const SqliteReportDatabase&) = delete;
    SqliteReportDatabase& operator=(const SqliteReportDatabase&) = delete;
    ~SqliteReportDatabase() override {
        if (!file_.empty()) {
            ignoringErrors([this] { connection_->Close(); });
            unlink(file_.c_str());
        }
    }

    Connection& connection() override { return *connection_; }

    void publish() override {
        connection_->commit();
        connection_->Close();
        if (std::rename(file_.c_str(), path_.c_str()) != 0) {
            throw fileError("The report database cannot be moved to", path_);
        }
        file_.clear();
    }

private:
    std::string path_;
    std::string file_; ///< empty once it stands in its position
    std::unique_ptr<sqlite::SqliteConnection> connection_;
};

} // namespace

void SqliteReportDatabases::remove(const std::string& path) {
    if (unlink(path.c_str()) != 0 && errno != ENOENT) {
        throw fileError("The old report database cannot be deleted:", path);
    }
}

std::unique_ptr<ReportDatabase>
SqliteReportDatabases::create(const std::string& path, const std::vector<ReportTable>& tables) {
    return std::make_unique<SqliteReportDatabase>(path, tables);
}

std::shared_ptr<Connection> SqliteReportDatabases::openReadOnly(const std::string& path) {
    return std::make_shared<sqlite::SqliteConnection>(path, sqlite::Access::ReadOnly);
}

} // namespace kintar::companion
