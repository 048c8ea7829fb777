// A database of a site's tables whose rows come from lines of input.
#pragma once

#include "companion/SiteSchema.h"
#include "companion/sqlite/SqliteConnection.h"
#include "companion/sqlite/SqliteHandle.h"
#include "tools/explain/Rules.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace kintar::explain {

/// A folder of this process, gone with everything in it when the process ends.
class ProcessFolder {
public:
    ProcessFolder();
    ProcessFolder(const ProcessFolder&) = delete;
    ProcessFolder& operator=(const ProcessFolder&) = delete;
    ~ProcessFolder();
    [[nodiscard]] std::string operator/(std::string_view name) const {
        return (path_ / name).string();
    }

private:
    std::filesystem::path path_;
};

/// Made once and filled anew for each line, so that thousands of lines take seconds.
class TableDatabase {
public:
    /// `statements` make the tables of a file that is not there yet.
    TableDatabase(const std::string& file, const std::vector<std::string>& statements);

    /// Empties the table and puts these rows into it: columns by name, letter case ignored; a
    /// column that a row does not name is Null. Throws BadInput for a column that is unknown.
    void fill(const companion::TableDefinition& table, const std::vector<Json>& rows);
    void run(const std::string& sql);
    [[nodiscard]] companion::sqlite::SqliteConnection& connection() { return *connection_; }

private:
    void insert(const companion::TableDefinition& table, const Json& row);

    companion::sqlite::DatabaseHandle database_;
    std::unique_ptr<companion::sqlite::SqliteConnection> connection_;
};

} // namespace kintar::explain
