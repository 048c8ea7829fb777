#include "tools/site/CopyTarget.h"

#include "companion/dialect/PostgresOutput.h"
#include "companion/postgres/PostgresSchema.h"
#include "tools/site/SchemaCheck.h"
#include "tools/site/ServerLoader.h"
#include "tools/site/SiteError.h"

#include <algorithm>

namespace kintar::site {

namespace pg = companion::postgres;
using companion::ColumnDefinition;
using companion::IndexDefinition;
using companion::KeyKind;
using companion::TableDefinition;

namespace {

const ColumnDefinition* assignedKey(const TableDefinition& table) {
    const auto found = std::ranges::find(table.columns, KeyKind::Assigned, &ColumnDefinition::key);
    return found == table.columns.end() ? nullptr : &*found;
}

long long firstNumber(SiteStatement& query) {
    return query.next() ? query.integer(0) : 0;
}

/// `CREATE INDEX x` made again by a copy that goes on.
std::string ifNotThere(std::string statement) {
    constexpr std::string_view make = "CREATE INDEX ";
    return statement.insert(make.size(), "IF NOT EXISTS ");
}

/// The table's text columns that an index of it is made over.
std::vector<std::string> textColumns(const TableDefinition& table, const IndexDefinition& index) {
    std::vector<std::string> names;
    for (const ColumnDefinition& column : table.columns) {
        if ((' ' + index.columns).find(' ' + column.name + " COLLATE NOCASE") !=
            std::string::npos) {
            names.push_back(column.name);
        }
    }
    return names;
}

/// Whether the server's limit of an index's rows is what a statement met: there is no better sign
/// of it than the state that the error names.
bool isRowTooLong(const SiteError& error) {
    constexpr std::string_view programLimitExceeded = "(54000)";
    return std::string_view(error.what()).find(programLimitExceeded) != std::string_view::npos;
}

} // namespace

CopyTarget::CopyTarget(const std::string& database)
    : database_(database, SiteDatabase::Access::Write), onServer_(database_.server() != nullptr) {
    if (isInterruptedCopy()) {
        return;
    }
    if (onServer_) {
        requireEmpty(database_);
    } else if (!isEmpty()) {
        throw SiteError("the database " + database +
                        " is not empty; a site is only copied into an empty one");
    }
    makeTables();
}

bool CopyTarget::isEmpty() {
    SiteStatement query(database_, "SELECT count(*) FROM sqlite_schema");
    query.start();
    return firstNumber(query) == 0;
}

bool CopyTarget::isInterruptedCopy() {
    return hasColumn(database_, "kintar_copy", "complete");
}

void CopyTarget::makeTables() {
    database_.execute("BEGIN");
    if (onServer_) {
        for (const std::string& statement : pg::functionStatements()) {
            database_.execute(statement);
        }
    }
    for (const TableDefinition& table : companion::siteTables()) {
        database_.execute(onServer_ ? pg::createTableStatement(table)
                                    : companion::createStatements(table).front());
    }
    database_.execute("CREATE TABLE kintar_copy (complete TEXT)");
    database_.execute("COMMIT");
}

std::string CopyTarget::nameOf(const TableDefinition& table) const {
    return onServer_ ? companion::dialect::postgresSchemaName(table.name) : '"' + table.name + '"';
}

bool CopyTarget::isComplete(const TableDefinition& table) {
    SiteStatement query(database_, "SELECT count(*) FROM kintar_copy WHERE complete = ?");
    query.start(table.name);
    return firstNumber(query) > 0;
}

void CopyTarget::forget(const TableDefinition& table) {
    SiteStatement forget(database_, "DELETE FROM kintar_copy WHERE complete = ?");
    forget.run(table.name);
}

void CopyTarget::fill(const TableDefinition& table, const std::function<void()>& fill) {
    SiteStatement remember(database_, "INSERT INTO kintar_copy VALUES (?)");
    database_.execute("BEGIN");
    try {
        forget(table);
        database_.execute((onServer_ ? "TRUNCATE " : "DELETE FROM ") + nameOf(table));
        fill();
        remember.run(table.name);
        database_.execute("COMMIT");
    } catch (...) {
        try {
            database_.execute("ROLLBACK");
        } catch (const SiteError&) {
            // The connection is gone, and with it the transaction; what was thrown says so.
        }
        throw;
    }
}

void CopyTarget::createIndexes(const std::function<void()>& checkpoint) {
    for (const TableDefinition& table : companion::siteTables()) {
        auto statements =
            onServer_ ? pg::createIndexStatements(table) : companion::createStatements(table);
        if (!onServer_) {
            statements.erase(statements.begin());
        }
        for (std::size_t at = 0; at < statements.size(); ++at) {
            checkpoint();
            createIndex(table, table.indexes[at], ifNotThere(statements[at]));
        }
    }
}

void CopyTarget::createIndex(const TableDefinition& table, const IndexDefinition& index,
                             const std::string& statement) {
    try {
        database_.execute(statement);
    } catch (const SiteError& error) {
        if (!onServer_ || !isRowTooLong(error)) {
            throw;
        }
        // Once the row has been mended, the table has to be copied again.
        forget(table);
        throw SiteError(longestRow(table, index));
    }
}

/// The row that an index cannot hold, by its first column. Texts count as long as they are stored:
/// an index takes a longer one where it can be compressed.
std::string CopyTarget::longestRow(const TableDefinition& table, const IndexDefinition& index) {
    std::string size;
    std::string names;
    for (const std::string& column : textColumns(table, index)) {
        const std::string name = companion::dialect::postgresSchemaName(column);
        size += (size.empty() ? "" : " + ") + ("coalesce(pg_column_size(" + name + "), 0)");
        names += (names.empty() ? "" : ", ") + column;
    }
    const std::string& key = table.columns.front().name;
    SiteStatement longest(database_, "SELECT " + companion::dialect::postgresSchemaName(key) +
                                         " FROM " + nameOf(table) + " ORDER BY " + size +
                                         " DESC LIMIT 1");
    longest.start();
    return table.name + ", " + key + ' ' + std::to_string(firstNumber(longest)) +
           ": too long for an index of the database server (about 2,600 bytes): " + names;
}

void CopyTarget::continueKeysBehind(const TableDefinition& table, long long last) {
    const ColumnDefinition* key = assignedKey(table);
    if (key == nullptr || last <= 0) {
        return;
    }
    if (onServer_) {
        SiteStatement query(database_, "SELECT setval(pg_get_serial_sequence('" + nameOf(table) +
                                           "', lower('" + key->name + "')), ?)");
        query.run(static_cast<std::int64_t>(last));
        return;
    }
    SiteStatement forget(database_, "DELETE FROM sqlite_sequence WHERE name = ?");
    forget.run(table.name);
    SiteStatement remember(database_, "INSERT INTO sqlite_sequence (name, seq) VALUES (?, ?)");
    remember.run(table.name, static_cast<std::int64_t>(last));
}

void CopyTarget::finish() {
    if (onServer_) {
        database_.execute("ANALYZE");
        database_.execute("DROP TABLE kintar_copy");
        return;
    }
    database_.execute("BEGIN");
    for (const std::string& statement : companion::siteStatisticsStatements()) {
        database_.execute(statement);
    }
    database_.execute("DROP TABLE kintar_copy");
    database_.execute("COMMIT");
}

long long lastKeyGiven(SiteDatabase& database, const TableDefinition& table) {
    const ColumnDefinition* key = assignedKey(table);
    if (key == nullptr) {
        return 0;
    }
    SiteStatement held(database, "SELECT max(" + key->name + ") FROM " + table.name);
    held.start();
    const long long highest = firstNumber(held);
    if (database.server() != nullptr) {
        SiteStatement given(database, "SELECT pg_sequence_last_value("
                                      "pg_get_serial_sequence(lower(?), lower(?))::regclass)");
        given.start(table.name, key->name);
        return std::max(highest, firstNumber(given));
    }
    SiteStatement given(database, "SELECT seq FROM sqlite_sequence WHERE name = ?");
    given.start(table.name);
    return std::max(highest, firstNumber(given));
}

} // namespace kintar::site
