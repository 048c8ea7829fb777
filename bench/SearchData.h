// A large site for benchmarks of the search, and bare statements beside it.
#pragma once

#include "search/SearchSite.h"

#include <sqlite3.h>
#include <stdexcept>
#include <string>

namespace kintar::bench {

/// Names of group 3, one and a quarter card a name, two uses a card, two fields a name.
inline void fillSearchSite(search::testing::SearchSite& site, int names) {
    const std::string n = std::to_string(names);
    const std::string cards = std::to_string(names + names / 4);
    const auto numbers = [](const std::string& to) {
        return "WITH RECURSIVE c(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM c WHERE i < " + to +
               ") ";
    };
    site.foreign(
        "BEGIN;"
        "INSERT INTO Names " +
        numbers(n) +
        "SELECT i, char(65 + i % 26) || 'name' || i, char(65 + i % 7) || 'nn' || i, 3, i % 20, "
        "-(i % 17 = 0), -(i % 23 = 0) FROM c;"
        "INSERT INTO Cards " +
        numbers(cards) + "SELECT i, 1 + i % " + n +
        ", 3, printf('%06d', i), 'C' || i, i % 10 <> 0, datetime('2010-01-01', '+' || (i % 900) || "
        "' days'), datetime('2013-01-01', '+' || (i % 900) || ' days'), -(i % 31 = 0), i % 3 FROM "
        "c;"
        "INSERT INTO LocCards " +
        numbers(cards) +
        "SELECT 2 * i + 1, i, 11, datetime('2012-01-01', '+' || (i % 70000) || ' minutes'), i % "
        "50, CASE i % 3 WHEN 0 THEN 'I' ELSE 'O' END, 'N', 'N', 'N' FROM c;"
        "INSERT INTO LocCards " +
        numbers(cards) +
        "SELECT 2 * i, i, 12, datetime('2011-01-01', '+' || (i % 70000) || ' minutes'), i % 50, "
        "'O', 'N', 'N', 'N' FROM c;"
        "INSERT INTO UDF " +
        numbers(n) +
        "SELECT i, 1, 'Blue ' || (i % 100), 3 FROM c;"
        "INSERT INTO UDF " +
        numbers(n) +
        "SELECT i, 2, 'Hall ' || (i % 10), 3 FROM c;"
        "INSERT INTO Skills " +
        numbers(n) +
        "SELECT i, 1 + i % 5 FROM c;"
        "INSERT INTO Company " +
        numbers("20") +
        "SELECT 3, i - 1, 'Company ' || i FROM c;"
        "INSERT INTO Loc VALUES(11,3,'North','',0),(12,3,'South','',0);"
        "COMMIT; ANALYZE;");
}

/// A statement of the engine itself, prepared once.
class BareStatement {
public:
    BareStatement(const std::string& database, const std::string& sql) {
        if (sqlite3_open_v2(database.c_str(), &database_, SQLITE_OPEN_READONLY, nullptr) !=
                SQLITE_OK ||
            sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement_, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database_));
        }
    }
    BareStatement(const BareStatement&) = delete;
    BareStatement& operator=(const BareStatement&) = delete;
    ~BareStatement() {
        sqlite3_finalize(statement_);
        sqlite3_close(database_);
    }
    void plain(const char* sql) { sqlite3_exec(database_, sql, nullptr, nullptr, nullptr); }
    void bind(int index, sqlite3_int64 value) { sqlite3_bind_int64(statement_, index, value); }
    /// Steps through all rows and looks at every value.
    std::size_t run() {
        std::size_t rows = 0;
        while (sqlite3_step(statement_) == SQLITE_ROW) {
            for (int column = 0; column < sqlite3_column_count(statement_); ++column) {
                bytes_ += static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
            }
            ++rows;
        }
        sqlite3_reset(statement_);
        return rows;
    }
    [[nodiscard]] std::size_t bytes() const { return bytes_; }

private:
    sqlite3* database_ = nullptr;
    sqlite3_stmt* statement_ = nullptr;
    std::size_t bytes_ = 0;
};

} // namespace kintar::bench
