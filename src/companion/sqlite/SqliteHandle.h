// Owners of what SQLite hands out, and its errors as ours.
#pragma once

#include "companion/DatabaseError.h"

#include <memory>
#include <sqlite3.h>
#include <string>

namespace kintar::companion::sqlite {

struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
};
using DatabaseHandle = std::unique_ptr<sqlite3, CloseDatabase>;

struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

enum class Access : std::uint8_t {
    ReadWrite,
    ReadOnly,
    /// For a file that nobody else knows and that goes if anything fails: reading and writing
    /// without waiting for the disk.
    Private,
};

/// Opens an existing database file defensively: no double-quoted strings, no trusted schema, no
/// extensions, no further databases, bounded sizes; a locked database is waited for two seconds.
/// Throws DatabaseError: Missing, Damaged (also where the file is no database), Locked and so on.
DatabaseHandle openDatabase(const std::string& path, Access access);

/// Compiles one statement of the engine's own language.
StatementHandle prepare(sqlite3* database, const std::string& sql);

/// Runs statements of the engine's own language that give no rows.
void runPlain(sqlite3* database, const std::string& sql);

/// The error that a result code of this database means. Never holds a value of a statement.
DatabaseError errorOf(sqlite3* database, int code);

} // namespace kintar::companion::sqlite
