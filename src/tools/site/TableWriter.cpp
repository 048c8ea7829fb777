#include "tools/site/TableWriter.h"

#include "base/RunTimeError.h"
#include "companion/dialect/PostgresOutput.h"
#include "tools/site/SiteError.h"

#include <vector>

namespace kintar::site {

namespace {

constexpr std::size_t pieceBytes = std::size_t{1024} * 1024;

} // namespace

TableWriter::TableWriter(SiteDatabase& database, const companion::TableDefinition& table)
    : database_(database), table_(table) {
    if (database.server() != nullptr) {
        return;
    }
    std::string marks = "?";
    for (std::size_t column = 1; column < table.columns.size(); ++column) {
        marks += ", ?";
    }
    insert_ = std::make_unique<SiteStatement>(database, "INSERT INTO \"" + table.name +
                                                            "\" VALUES (" + marks + ")");
}

void TableWriter::add(const RowTexts& row) {
    // Digits become numbers by the declared types of the columns.
    std::vector<SiteValue> values;
    values.reserve(row.size());
    for (const auto& text : row) {
        values.push_back(siteValue(text));
    }
    if (insert_) {
        insert_->runRow(values);
        return;
    }
    waiting_.add(values);
    if (waiting_.text().size() >= pieceBytes) {
        finish();
    }
}

void TableWriter::finish() {
    if (insert_ || waiting_.text().empty()) {
        return;
    }
    try {
        companion::postgres::PostgresHandle& server = *database_.server();
        server.beginCopy("COPY " + companion::dialect::postgresSchemaName(table_.name) +
                         " FROM STDIN");
        server.putCopy(waiting_.text());
        server.endCopy();
    } catch (const RunTimeError& error) {
        throw SiteError(table_.name + ": " + error.what());
    }
    waiting_.clear();
}

} // namespace kintar::site
