#include "tools/site/ServerLoader.h"

#include "base/RunTimeError.h"
#include "companion/dialect/PostgresOutput.h"
#include "companion/postgres/PostgresSchema.h"
#include "tools/site/SiteError.h"

namespace kintar::site {

namespace pg = companion::postgres;

namespace {

constexpr std::size_t pieceBytes = std::size_t{1024} * 1024;

} // namespace

void requireEmpty(SiteDatabase& database) {
    SiteStatement query(database,
                        "SELECT pg_encoding_to_char(encoding), (SELECT count(*) FROM pg_class "
                        "WHERE relnamespace = 'public'::regnamespace) FROM pg_database "
                        "WHERE datname = current_database()");
    query.start();
    query.next();
    if (query.text(0) != "UTF8") {
        throw SiteError("the database keeps its texts in " + query.text(0) +
                        "; a site needs one in UTF8");
    }
    if (query.integer(1) != 0) {
        throw SiteError("the database is not empty; a site is only made in an empty one");
    }
}

ServerLoader::ServerLoader(const std::string& connectionText)
    : database_(connectionText, SiteDatabase::Access::Create),
      waiting_(companion::siteTables().size()) {
    requireEmpty(database_);
}

void ServerLoader::createTables() {
    database_.execute("BEGIN");
    database_.execute("SET LOCAL maintenance_work_mem = '256MB'");
    for (const std::string& statement : pg::functionStatements()) {
        database_.execute(statement);
    }
    for (const companion::TableDefinition& table : companion::siteTables()) {
        database_.execute(pg::createTableStatement(table));
    }
}

void ServerLoader::add(std::size_t table, std::span<const SiteValue> row) {
    waiting_[table].add(row);
    if (waiting_[table].text().size() >= pieceBytes) {
        send(table);
    }
}

void ServerLoader::send(std::size_t table) {
    CopyText& rows = waiting_[table];
    if (rows.text().empty()) {
        return;
    }
    const std::string& name = companion::siteTables()[table].name;
    try {
        database_.server()->beginCopy("COPY " + companion::dialect::postgresSchemaName(name) +
                                      " FROM STDIN (FREEZE)");
        database_.server()->putCopy(rows.text());
        database_.server()->endCopy();
    } catch (const RunTimeError& error) {
        throw SiteError(name + ": " + error.what());
    }
    rows.clear();
}

void ServerLoader::createIndexes(const std::function<void()>& checkpoint) {
    for (std::size_t table = 0; table < waiting_.size(); ++table) {
        send(table);
    }
    for (const companion::TableDefinition& table : companion::siteTables()) {
        for (const std::string& statement : pg::createIndexStatements(table)) {
            checkpoint();
            database_.execute(statement);
        }
        const std::string keys = pg::continueKeysStatement(table);
        if (!keys.empty()) {
            database_.execute(keys);
        }
    }
    checkpoint();
    database_.execute("ANALYZE");
}

void ServerLoader::commit() {
    database_.execute("COMMIT");
}

} // namespace kintar::site
