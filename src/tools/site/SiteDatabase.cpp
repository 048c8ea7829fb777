#include "tools/site/SiteDatabase.h"

#include "tools/site/SiteError.h"

#include <sqlite3.h>

namespace kintar::site {

namespace {

// What a query of a damaged or hostile file may do before it is given up.
constexpr int maximumTextBytes = 16 * 1024 * 1024;

void openDefensively(sqlite3* handle) {
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, maximumTextBytes);
    sqlite3_busy_timeout(handle, 2000);
}

} // namespace

void SiteDatabase::Close::operator()(sqlite3* handle) const {
    sqlite3_close_v2(handle);
}

SiteDatabase::SiteDatabase(const std::filesystem::path& file, Access access) : file_(file) {
    const int flags = access == Access::Read
                          ? SQLITE_OPEN_READONLY
                          : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_EXCLUSIVE;
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(file.c_str(), &handle, flags, nullptr);
    handle_.reset(handle);
    if (result != SQLITE_OK) {
        fail();
    }
    sqlite3_extended_result_codes(handle, 1);
    if (access == Access::Read) {
        openDefensively(handle);
        // The file is first looked at here: what is no database fails now and not in a query.
        execute("PRAGMA schema_version");
    }
}

SiteDatabase::SiteDatabase() : file_("in memory") {
    sqlite3* handle = nullptr;
    const int result = sqlite3_open(":memory:", &handle);
    handle_.reset(handle);
    if (result != SQLITE_OK) {
        fail();
    }
}

void SiteDatabase::execute(const std::string& sql) {
    if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail();
    }
}

void SiteDatabase::fail() const {
    const char* reason = handle_ ? sqlite3_errmsg(handle_.get()) : "out of memory";
    throw SiteError(file_.string() + ": " + reason);
}

void SiteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

SiteStatement::SiteStatement(SiteDatabase& database, const std::string& sql)
    : database_(&database) {
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v3(database.handle(), sql.c_str(), static_cast<int>(sql.size()),
                             SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
    statement_.reset(statement);
}

void SiteStatement::check(int result) const {
    if (result != SQLITE_OK) {
        database_->fail();
    }
}

void SiteStatement::bind(int position, std::int64_t value) {
    check(sqlite3_bind_int64(statement_.get(), position, value));
}

void SiteStatement::bind(int position, std::string_view text) {
    check(sqlite3_bind_text(statement_.get(), position, text.data() != nullptr ? text.data() : "",
                            static_cast<int>(text.size()),
                            copyTexts_ ? SQLITE_TRANSIENT : SQLITE_STATIC));
}

void SiteStatement::bind(int position, DateTime moment) {
    const std::string text = moment.isoWithBlank();
    check(sqlite3_bind_text(statement_.get(), position, text.data(), static_cast<int>(text.size()),
                            SQLITE_TRANSIENT));
}

void SiteStatement::bind(int position, std::nullptr_t) {
    check(sqlite3_bind_null(statement_.get(), position));
}

void SiteStatement::reset() {
    sqlite3_reset(statement_.get());
}

bool SiteStatement::next() {
    const int result = sqlite3_step(statement_.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE) {
        database_->fail();
    }
    return result == SQLITE_ROW;
}

void SiteStatement::finish() {
    while (next()) {
    }
    reset();
}

std::int64_t SiteStatement::integer(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

std::string SiteStatement::text(int column) const {
    const unsigned char* bytes = sqlite3_column_text(statement_.get(), column);
    if (bytes == nullptr) {
        return {};
    }
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
    return {reinterpret_cast<const char*>(bytes), size};
}

bool SiteStatement::isNull(int column) const {
    return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

bool SiteStatement::isInteger(int column) const {
    return sqlite3_column_type(statement_.get(), column) == SQLITE_INTEGER;
}

} // namespace kintar::site
