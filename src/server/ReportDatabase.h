// Small databases that are made fresh for one report and appear whole or not at all.
#pragma once

#include "server/Companion.h"
#include "server/Recordset.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kintar {

struct ReportColumn {
    std::string name;
    ColumnType type = ColumnType::Integer;
    /// Characters of a text column; 0 for other types.
    std::size_t width = 0;
};

struct ReportTable {
    std::string name;
    std::vector<ReportColumn> columns;
    /// One index, not unique, over these columns.
    std::string indexName;
    std::vector<std::string> indexColumns;
};

/// A report database under construction, on a connection of its own, where nobody else looks.
/// Destroyed without `publish` it leaves nothing behind.
class ReportDatabase {
public:
    ReportDatabase() = default;
    ReportDatabase(const ReportDatabase&) = delete;
    ReportDatabase& operator=(const ReportDatabase&) = delete;
    virtual ~ReportDatabase() = default;

    /// For reading and writing; valid until `publish`.
    virtual Connection& connection() = 0;
    /// Closes the connection and moves the file into its position, whole. Throws RunTimeError where
    /// that fails; the position is empty then.
    virtual void publish() = 0;
};

/// Where report databases come from.
class ReportDatabases {
public:
    virtual ~ReportDatabases() = default;
    /// Deletes the file `path`; no error where there is none. Throws RunTimeError where it stays.
    virtual void remove(const std::string& path) = 0;
    /// Begins the database that is to stand at `path`, with empty tables. The place is private to
    /// the user and lies in the same folder, so that the move is one step. Throws RunTimeError.
    virtual std::unique_ptr<ReportDatabase> create(const std::string& path,
                                                   const std::vector<ReportTable>& tables) = 0;
    /// An existing database file, for reading only. Throws RunTimeError.
    virtual std::shared_ptr<Connection> openReadOnly(const std::string& path) = 0;
};

} // namespace kintar
