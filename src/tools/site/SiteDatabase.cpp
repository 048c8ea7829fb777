#include "tools/site/SiteDatabase.h"

#include "companion/postgres/ConnectionText.h"
#include "tools/site/SiteError.h"

#include <algorithm>
#include <cstdlib>
#include <sqlite3.h>

namespace kintar::site {

namespace pg = companion::postgres;

namespace {

/// A tool waits longer than a window would.
constexpr pg::Limits patient{std::chrono::seconds(10), std::chrono::milliseconds(0)};

/// Parameters as the server numbers them; the statements hold no other question marks.
std::string numbered(const std::string& sql) {
    std::string text;
    int number = 0;
    for (const char c : sql) {
        text += c == '?' ? "$" + std::to_string(++number) : std::string(1, c);
    }
    return text;
}

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

SiteDatabase::SiteDatabase(const std::string& database, Access access) : name_(database) {
    if (pg::isConnectionText(database)) {
        try {
            const pg::ConnectionText text(database);
            name_ = text.shownName();
            server_ = std::make_unique<pg::PostgresHandle>(text, access == Access::Read, patient);
        } catch (const RunTimeError& error) {
            throw SiteError(error.what());
        }
        return;
    }
    const int flags = access == Access::Read
                          ? SQLITE_OPEN_READONLY
                          : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE |
                                (access == Access::Create ? SQLITE_OPEN_EXCLUSIVE : 0);
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(database.c_str(), &handle, flags, nullptr);
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

SiteDatabase::SiteDatabase() : name_("in memory") {
    sqlite3* handle = nullptr;
    const int result = sqlite3_open(":memory:", &handle);
    handle_.reset(handle);
    if (result != SQLITE_OK) {
        fail();
    }
}

pg::ResultHandle SiteDatabase::ask(const std::string& sql, const pg::BoundValues& values) const {
    try {
        return values.values.empty() ? server_->run(sql) : server_->runBound(sql, values);
    } catch (const RunTimeError& error) {
        throw SiteError(name_ + ": " + error.what());
    }
}

void SiteDatabase::execute(const std::string& sql) {
    if (server_) {
        ask(sql, {});
        return;
    }
    if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail();
    }
}

void SiteDatabase::fail() const {
    const char* reason = handle_ ? sqlite3_errmsg(handle_.get()) : "out of memory";
    throw SiteError(name_ + ": " + reason);
}

void SiteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

SiteStatement::SiteStatement(SiteDatabase& database, const std::string& sql)
    : database_(&database) {
    if (database.server() != nullptr) {
        sql_ = numbered(sql);
        return;
    }
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

void SiteStatement::runRow(std::span<const SiteValue> row) {
    copyTexts_ = false;
    int position = 0;
    for (const SiteValue& value : row) {
        ++position;
        std::visit([&](const auto& held) { bind(position, held); }, value);
    }
    finish();
}

void SiteStatement::keep(std::optional<std::string> text) {
    isNull_.push_back(!text);
    values_.kept.push_back(std::move(text).value_or(""));
}

void SiteStatement::bind(int position, std::int64_t value) {
    if (database_->server() != nullptr) {
        keep(std::to_string(value));
        return;
    }
    check(sqlite3_bind_int64(statement_.get(), position, value));
}

void SiteStatement::bind(int position, std::string_view text) {
    if (database_->server() != nullptr) {
        keep(std::string(text));
        return;
    }
    check(sqlite3_bind_text(statement_.get(), position, text.data() != nullptr ? text.data() : "",
                            static_cast<int>(text.size()),
                            copyTexts_ ? SQLITE_TRANSIENT : SQLITE_STATIC));
}

void SiteStatement::bind(int position, DateTime moment) {
    const std::string text = moment.isoWithBlank();
    if (database_->server() != nullptr) {
        keep(text);
        return;
    }
    check(sqlite3_bind_text(statement_.get(), position, text.data(), static_cast<int>(text.size()),
                            SQLITE_TRANSIENT));
}

void SiteStatement::bind(int position, std::nullptr_t) {
    if (database_->server() != nullptr) {
        keep(std::nullopt);
        return;
    }
    check(sqlite3_bind_null(statement_.get(), position));
}

void SiteStatement::reset() {
    if (database_->server() != nullptr) {
        values_ = {};
        isNull_.clear();
        rows_.reset();
        row_ = -1;
        return;
    }
    sqlite3_reset(statement_.get());
}

bool SiteStatement::nextOnServer() {
    if (!rows_) {
        for (std::size_t at = 0; at < values_.kept.size(); ++at) {
            values_.values.push_back(isNull_[at] ? nullptr : values_.kept[at].c_str());
            values_.lengths.push_back(static_cast<int>(values_.kept[at].size()));
        }
        rows_ = database_->ask(sql_, values_);
    }
    return ++row_ < PQntuples(rows_.get());
}

bool SiteStatement::next() {
    if (database_->server() != nullptr) {
        return nextOnServer();
    }
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
    if (rows_) {
        return std::strtoll(PQgetvalue(rows_.get(), row_, column), nullptr, 10);
    }
    return sqlite3_column_int64(statement_.get(), column);
}

std::string SiteStatement::text(int column) const {
    if (rows_) {
        return {PQgetvalue(rows_.get(), row_, column),
                static_cast<std::size_t>(PQgetlength(rows_.get(), row_, column))};
    }
    const unsigned char* bytes = sqlite3_column_text(statement_.get(), column);
    if (bytes == nullptr) {
        return {};
    }
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
    return {reinterpret_cast<const char*>(bytes), size};
}

bool SiteStatement::isNull(int column) const {
    if (rows_) {
        return PQgetisnull(rows_.get(), row_, column) != 0;
    }
    return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

bool SiteStatement::isInteger(int column) const {
    return sqlite3_column_type(statement_.get(), column) == SQLITE_INTEGER;
}

} // namespace kintar::site
