#include "companion/sqlite/SqliteHandle.h"

#include <sys/stat.h>

namespace kintar::companion::sqlite {

namespace {

constexpr int busyMilliseconds = 2000;
constexpr int maximumValueBytes = 16 * 1024 * 1024;
constexpr int maximumSqlBytes = 1024 * 1024;

void limitSizes(sqlite3* database) {
    sqlite3_limit(database, SQLITE_LIMIT_LENGTH, maximumValueBytes);
    sqlite3_limit(database, SQLITE_LIMIT_SQL_LENGTH, maximumSqlBytes);
    sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(database, SQLITE_LIMIT_WORKER_THREADS, 0);
    sqlite3_limit(database, SQLITE_LIMIT_TRIGGER_DEPTH, 10);
}

void switchOff(sqlite3* database) {
    for (const int option :
         {SQLITE_DBCONFIG_DQS_DML, SQLITE_DBCONFIG_DQS_DDL, SQLITE_DBCONFIG_TRUSTED_SCHEMA,
          SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION}) {
        sqlite3_db_config(database, option, 0, nullptr);
    }
    sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

void checkFile(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        throw DatabaseError(ErrorKind::Missing, "There is no database file " + path + ".");
    }
    if (!S_ISREG(status.st_mode)) {
        throw DatabaseError(ErrorKind::Damaged, "The database " + path + " is no plain file.");
    }
    if (status.st_size == 0) {
        throw DatabaseError(ErrorKind::Damaged, "The database file " + path + " is empty.");
    }
}

ErrorKind kindOf(int primaryCode) {
    switch (primaryCode) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        return ErrorKind::Damaged;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return ErrorKind::Locked;
    case SQLITE_READONLY:
        return ErrorKind::ReadOnly;
    case SQLITE_FULL:
        return ErrorKind::DiskFull;
    case SQLITE_CONSTRAINT:
        return ErrorKind::Constraint;
    case SQLITE_CANTOPEN:
        return ErrorKind::Missing;
    default:
        return ErrorKind::Other;
    }
}

std::string textOf(sqlite3* database, int code) {
    const char* shown = database != nullptr ? sqlite3_db_filename(database, "main") : nullptr;
    const std::string file = shown != nullptr ? std::string(" ") + shown : std::string();
    switch (kindOf(code & 0xFF)) {
    case ErrorKind::Damaged:
        return "The database file" + file + " is damaged, or no database.";
    case ErrorKind::Locked:
        return "The database file" + file + " is locked by another program.";
    case ErrorKind::ReadOnly:
        return "The database file" + file + " is read-only.";
    case ErrorKind::DiskFull:
        return "The disk with the database file" + file + " is full.";
    case ErrorKind::Missing:
        return "The database file" + file + " cannot be opened.";
    default:
        break;
    }
    // These texts name tables, columns and syntax; values are parameters and do not appear.
    return std::string("The database says: ") +
           (database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code));
}

} // namespace

DatabaseError errorOf(sqlite3* database, int code) {
    return {kindOf(code & 0xFF), textOf(database, code)};
}

DatabaseHandle openDatabase(const std::string& path, Access access) {
    checkFile(path);
    const int mode = access == Access::ReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    sqlite3* opened = nullptr;
    // A leading "./" keeps a relative path from being read as a URI.
    const std::string plainPath = path.starts_with('/') ? path : "./" + path;
    const int code = sqlite3_open_v2(plainPath.c_str(), &opened,
                                     mode | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    DatabaseHandle database(opened);
    if (code != SQLITE_OK) {
        throw errorOf(database.get(), code);
    }
    sqlite3_busy_timeout(database.get(), busyMilliseconds);
    switchOff(database.get());
    limitSizes(database.get());
    // 128 MB at most: a large list is read twice as fast as through the small default cache.
    runPlain(database.get(), "PRAGMA cache_size=-131072");
    runPlain(database.get(), "PRAGMA cell_size_check=ON");
    if (access == Access::Private) {
        runPlain(database.get(), "PRAGMA journal_mode=MEMORY");
        runPlain(database.get(), "PRAGMA synchronous=OFF");
    }
    // Reading the schema tells a database from any other file.
    runPlain(database.get(), "SELECT count(*) FROM sqlite_schema");
    return database;
}

StatementHandle prepare(sqlite3* database, const std::string& sql) {
    sqlite3_stmt* prepared = nullptr;
    const int code = sqlite3_prepare_v3(database, sql.c_str(), static_cast<int>(sql.size() + 1),
                                        SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    StatementHandle statement(prepared);
    if (code != SQLITE_OK) {
        throw errorOf(database, code);
    }
    return statement;
}

void runPlain(sqlite3* database, const std::string& sql) {
    const int code = sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) {
        throw errorOf(database, code);
    }
}

} // namespace kintar::companion::sqlite
