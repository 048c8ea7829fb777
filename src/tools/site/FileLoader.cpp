#include "tools/site/FileLoader.h"

namespace kintar::site {

FileLoader::FileLoader(const std::string& file) : database_(file, SiteDatabase::Access::Create) {
    // A database that nobody reads before it is complete needs neither a journal nor waits for the
    // disk in between.
    database_.execute("PRAGMA journal_mode=OFF");
    database_.execute("PRAGMA synchronous=OFF");
    database_.execute("PRAGMA cache_size=-131072");
    database_.execute("PRAGMA encoding='UTF-8'");
}

void FileLoader::createTables() {
    database_.execute("BEGIN");
    for (const companion::TableDefinition& table : companion::siteTables()) {
        const std::vector<std::string> statements = companion::createStatements(table);
        database_.execute(statements.front());
        indexes_.insert(indexes_.end(), statements.begin() + 1, statements.end());
    }
    for (const companion::TableDefinition& table : companion::siteTables()) {
        std::string marks = "?";
        for (std::size_t column = 1; column < table.columns.size(); ++column) {
            marks += ", ?";
        }
        inserts_.emplace_back(database_,
                              "INSERT INTO \"" + table.name + "\" VALUES (" + marks + ")");
    }
}

void FileLoader::add(std::size_t table, std::span<const SiteValue> row) {
    inserts_[table].runRow(row);
}

void FileLoader::createIndexes(const std::function<void()>& checkpoint) {
    inserts_.clear();
    for (const std::string& index : indexes_) {
        checkpoint();
        database_.execute(index);
    }
    for (const std::string& statement : companion::siteStatisticsStatements()) {
        database_.execute(statement);
    }
}

void FileLoader::commit() {
    database_.execute("COMMIT");
}

} // namespace kintar::site
