#include "tools/explain/TableDatabase.h"

#include "companion/Catalog.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace kintar::explain {
namespace {

namespace sqlite = companion::sqlite;

void bindValue(sqlite3_stmt* statement, int position, const std::string& column, ColumnType type,
               const Json& value) {
    if (value.is_boolean()) {
        sqlite3_bind_int64(statement, position, value.get<bool>() ? -1 : 0);
    } else if (value.is_number_integer()) {
        sqlite3_bind_int64(statement, position, value.get<std::int64_t>());
    } else if (value.is_number()) {
        sqlite3_bind_double(statement, position, value.get<double>());
    } else if (value.is_string()) {
        std::string text = value.get<std::string>();
        if (type == ColumnType::DateTime) {
            text = dateTime(Json{{column, value}}, column.c_str()).isoWithBlank();
        }
        sqlite3_bind_text64(statement, position, text.data(), text.size(), SQLITE_TRANSIENT,
                            SQLITE_UTF8);
    } else {
        sqlite3_bind_null(statement, position);
    }
}

} // namespace

ProcessFolder::ProcessFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kintar-explain-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), "no temporary folder can be made");
    }
    path_ = name;
}

ProcessFolder::~ProcessFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

TableDatabase::TableDatabase(const std::string& file, const std::vector<std::string>& statements) {
    sqlite3* opened = nullptr;
    const int code = sqlite3_open(file.c_str(), &opened);
    database_.reset(opened);
    if (code != SQLITE_OK) {
        throw sqlite::errorOf(opened, code);
    }
    run("PRAGMA journal_mode=MEMORY");
    run("PRAGMA synchronous=OFF");
    for (const std::string& statement : statements) {
        run(statement);
    }
    connection_ = std::make_unique<sqlite::SqliteConnection>(file, sqlite::Access::Private);
}

void TableDatabase::run(const std::string& sql) {
    sqlite::runPlain(database_.get(), sql);
}

void TableDatabase::fill(const companion::TableDefinition& table, const std::vector<Json>& rows) {
    run("DELETE FROM \"" + table.name + '"');
    for (const Json& row : rows) {
        insert(table, row);
    }
}

void TableDatabase::insert(const companion::TableDefinition& table, const Json& row) {
    std::string names;
    std::string places;
    for (const auto& [name, value] : row.items()) {
        const auto column = companion::findColumn(table, name);
        if (!column) {
            throw BadInput("'" + name + "' is no column of '" + table.name + "'");
        }
        names += (names.empty() ? "\"" : ", \"") + table.columns[*column].name + '"';
        places += places.empty() ? "?" : ", ?";
    }
    if (names.empty()) {
        return;
    }
    const sqlite::StatementHandle statement =
        sqlite::prepare(database_.get(), "INSERT INTO \"" + table.name + "\" (" + names +
                                             ") VALUES (" + places + ")");
    int position = 0;
    for (const auto& [name, value] : row.items()) {
        const ColumnType type = table.columns[*companion::findColumn(table, name)].type;
        bindValue(statement.get(), ++position, name, type, value);
    }
    const int code = sqlite3_step(statement.get());
    if (code != SQLITE_DONE) {
        throw sqlite::errorOf(database_.get(), code);
    }
}

} // namespace kintar::explain
