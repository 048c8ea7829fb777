// A statement of known shape and a large recordset, each beside bare SQLite doing the same.
#include "Beside.h"

#include "companion/SiteSchema.h"
#include "companion/sqlite/SqliteConnection.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

using kintar::companion::sqlite::Access;
using kintar::companion::sqlite::SqliteConnection;
using kintar::companion::sqlite::StatementHandle;

constexpr int people = 200000;
constexpr int lookUps = 20000;
constexpr int rounds = 15;

/// A database of many people in a folder of its own.
class Site {
public:
    Site() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kintar-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        folder_ = pattern;
        fill();
    }
    Site(const Site&) = delete;
    Site& operator=(const Site&) = delete;
    ~Site() { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::string database() const { return folder_ + "/site.db"; }

private:
    void fill() const {
        sqlite3* opened = nullptr;
        sqlite3_open(database().c_str(), &opened);
        const kintar::companion::sqlite::DatabaseHandle handle(opened);
        std::string sql = "PRAGMA synchronous=OFF; BEGIN;";
        for (const std::string& statement : kintar::companion::siteSchemaStatements()) {
            sql += statement + ";";
        }
        const std::string numbers =
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
            "WHERE i < " +
            std::to_string(people) + ") ";
        sql += numbers + "INSERT INTO Names SELECT i, 'Surname' || (i * 7919 % 20000), 'Given' || "
                         "(i % 500), 1 + i % 4, i % 50, -(i % 20 = 0), 0 FROM n;";
        sql += numbers + "INSERT INTO Images SELECT i, 1, 'photo' || i || '.jpg' FROM n; COMMIT";
        kintar::companion::sqlite::runPlain(opened, sql);
    }

    std::string folder_;
};

/// The same statement again and again, prepared once, its parameters bound and its row stepped.
class BareLookUp {
public:
    explicit BareLookUp(const Site& site)
        : database_(kintar::companion::sqlite::openDatabase(site.database(), Access::ReadOnly)),
          statement_(kintar::companion::sqlite::prepare(
              database_.get(), "SELECT FileName FROM Images WHERE NameID = ?1 AND ImgType = ?2")) {}

    std::size_t run() {
        std::size_t bytes = 0;
        for (int id = 1; id <= lookUps; ++id) {
            sqlite3_bind_int64(statement_.get(), 1, id);
            sqlite3_bind_int64(statement_.get(), 2, 1);
            while (sqlite3_step(statement_.get()) == SQLITE_ROW) {
                sqlite3_column_text(statement_.get(), 0);
                bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), 0));
            }
            sqlite3_reset(statement_.get());
        }
        return bytes;
    }

    void transaction(const char* word) {
        kintar::companion::sqlite::runPlain(database_.get(), word);
    }

private:
    kintar::companion::sqlite::DatabaseHandle database_;
    StatementHandle statement_;
};

std::size_t lookUp(SqliteConnection& connection) {
    std::size_t bytes = 0;
    for (int id = 1; id <= lookUps; ++id) {
        const kintar::Recordset rows =
            connection.open("SELECT FileName FROM Images WHERE NameID = " + std::to_string(id) +
                            " AND ImgType = 1");
        bytes += rows.field(std::size_t{0}).view().size();
    }
    return bytes;
}

void knownShape(const Site& site) {
    SqliteConnection connection(site.database(), Access::ReadOnly);
    BareLookUp bare(site);
    if (lookUp(connection) != bare.run()) {
        throw std::runtime_error("the two read different rows");
    }
    kintar::bench::beside(
        "20,000 statements of known shape / bare, each locks the file", rounds,
        [&] { lookUp(connection); }, [&] { bare.run(); }, 1.5);
}

std::size_t stepBare(sqlite3_stmt* statement, int columns) {
    std::size_t bytes = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column) {
            if (sqlite3_column_type(statement, column) == SQLITE_INTEGER) {
                bytes += static_cast<std::size_t>(sqlite3_column_int64(statement, column));
            } else {
                sqlite3_column_text(statement, column);
                bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, column));
            }
        }
    }
    sqlite3_reset(statement);
    return bytes;
}

void largeRecordset(const Site& site, const std::string& what, const std::string& sql) {
    SqliteConnection connection(site.database(), Access::ReadOnly);
    const auto translation = connection.translate(sql);
    // The bare statement runs on a connection of the same kind, with the same functions.
    SqliteConnection other(site.database(), Access::ReadOnly);
    const StatementHandle statement =
        kintar::companion::sqlite::prepare(other.handle(), translation.text);
    sqlite3_bind_text(statement.get(), 1, ", ", -1, SQLITE_STATIC);
    const int columns = sqlite3_column_count(statement.get());

    std::size_t count = 0;
    std::size_t memory = 0;
    kintar::bench::beside(
        what, rounds,
        [&] {
            const kintar::Recordset rows = connection.open(sql);
            count = rows.RecordCount();
            memory = rows.memoryUse();
        },
        [&] { stepBare(statement.get(), columns); }, 1.15);
    std::printf("    %zu rows, %.1f bytes a row in memory\n", count,
                static_cast<double>(memory) / static_cast<double>(count));
}

} // namespace

int main() {
    const Site site;
    knownShape(site);
    largeRecordset(site, "200,000 rows of 4 columns / bare stepping",
                   "SELECT ID, LName, FName, Company FROM [Names]");
    largeRecordset(site, "the same as the name list shows and orders it",
                   "SELECT ID, (LName & ', ' & FName) as Name, Visitor, Trace FROM [Names] ORDER "
                   "BY LName, FName");
}
