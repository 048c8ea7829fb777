// The database of a site, as the site tool reads it, and writes a file of the embedded engine.
#pragma once

#include "companion/postgres/PostgresHandle.h"
#include "tools/site/SiteValue.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace kintar::site {

class SiteDatabase;

/// A statement of plain SQL, its parameters written `?`. Must not outlive its database.
class SiteStatement {
public:
    SiteStatement(SiteDatabase& database, const std::string& sql);

    /// Binds the values in order and runs the statement to its end.
    template <class... Values>
    void run(const Values&... values) {
        // It has run before its arguments end: their texts need no copies.
        copyTexts_ = false;
        int position = 0;
        (bind(++position, values), ...);
        finish();
    }
    /// The same for a row whose values are only known now.
    void runRow(std::span<const SiteValue> row);
    /// Binds the values in order; `next` then goes through the rows.
    template <class... Values>
    void start(const Values&... values) {
        reset();
        copyTexts_ = true;
        int position = 0;
        (bind(++position, values), ...);
    }
    /// Stands on the next row; false where there is none.
    bool next();
    [[nodiscard]] std::int64_t integer(int column) const;
    /// As text, Null as "".
    [[nodiscard]] std::string text(int column) const;
    [[nodiscard]] bool isNull(int column) const;
    [[nodiscard]] bool isInteger(int column) const;

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const;
    };

    void bind(int position, std::int64_t value);
    void bind(int position, int value) { bind(position, static_cast<std::int64_t>(value)); }
    void bind(int position, YesNo value) { bind(position, static_cast<std::int64_t>(value)); }
    void bind(int position, std::string_view text);
    void bind(int position, const std::string& text) { bind(position, std::string_view(text)); }
    void bind(int position, const char* text) { bind(position, std::string_view(text)); }
    void bind(int position, DateTime moment);
    void bind(int position, std::nullptr_t);
    template <class T>
    void bind(int position, const std::optional<T>& value) {
        if (value) {
            bind(position, *value);
        } else {
            bind(position, nullptr);
        }
    }
    void keep(std::optional<std::string> text);
    bool nextOnServer();
    void check(int result) const;
    void reset();
    void finish();

    SiteDatabase* database_;
    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    // On a server:
    std::string sql_;
    companion::postgres::BoundValues values_;
    std::vector<bool> isNull_;
    companion::postgres::ResultHandle rows_;
    int row_ = -1;
    bool copyTexts_ = true;
};

/// A connection to a file of the embedded engine or to a database server. Every failure is a
/// SiteError that names the database.
class SiteDatabase {
public:
    enum class Access : std::uint8_t { Create, Read, Write };

    /// Create: a file must not be there yet. Write: it may. Read: it must be there and is never
    /// written, whatever it holds. Nothing in it is trusted: no views or triggers that call
    /// functions, no double-quoted text, limits on size.
    SiteDatabase(const std::string& database, Access access);

    /// An empty database in memory.
    SiteDatabase();

    void execute(const std::string& sql);
    [[nodiscard]] sqlite3* handle() const { return handle_.get(); }
    /// Null for a file.
    [[nodiscard]] companion::postgres::PostgresHandle* server() const { return server_.get(); }
    /// Runs what asks the server; its errors become ours.
    companion::postgres::ResultHandle ask(const std::string& sql,
                                          const companion::postgres::BoundValues& values) const;
    [[noreturn]] void fail() const;

private:
    struct Close {
        void operator()(sqlite3* handle) const;
    };

    std::string name_;
    std::unique_ptr<sqlite3, Close> handle_;
    std::unique_ptr<companion::postgres::PostgresHandle> server_;
};

} // namespace kintar::site
