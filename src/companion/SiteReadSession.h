// A connection of its own for long reads on a site.
#pragma once

#include "companion/sqlite/SqliteConnection.h"
#include "server/Companion.h"

#include <string>

namespace kintar::companion {

/// Reads the embedded database of a site; never writes.
class SiteReadSession final : public ReadSession {
public:
    /// Throws DatabaseError where the database cannot be opened.
    explicit SiteReadSession(const std::string& database)
        : connection_(database, sqlite::Access::ReadOnly) {}

    Connection& connection() override { return connection_; }
    void beginRead() override { connection_.beginRead(); }
    void endRead() noexcept override { connection_.endRead(); }

private:
    sqlite::SqliteConnection connection_;
};

} // namespace kintar::companion
