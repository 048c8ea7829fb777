#include "tools/site/SiteFiller.h"

#include "companion/SiteSchema.h"
#include "tools/site/PeopleFiller.h"
#include "tools/site/PlanFiller.h"

#include <vector>

namespace kintar::site {

namespace {

/// A database that nobody reads before it is complete needs neither a journal nor waits for the
/// disk in between.
void prepareForLoading(SiteDatabase& database) {
    database.execute("PRAGMA journal_mode=OFF");
    database.execute("PRAGMA synchronous=OFF");
    database.execute("PRAGMA cache_size=-131072");
    database.execute("PRAGMA encoding='UTF-8'");
}

RowCounts countRows(SiteDatabase& database) {
    RowCounts counts;
    for (const companion::TableDefinition& table : companion::siteTables()) {
        SiteStatement count(database, "SELECT count(*) FROM \"" + table.name + '"');
        count.start();
        count.next();
        counts[table.name] = count.integer(0);
    }
    return counts;
}

} // namespace

RowCounts fillSite(SiteDatabase& database, const SiteOptions& options) {
    prepareForLoading(database);
    std::vector<std::string> indexes;
    database.execute("BEGIN");
    for (const companion::TableDefinition& table : companion::siteTables()) {
        const std::vector<std::string> statements = companion::createStatements(table);
        database.execute(statements.front());
        indexes.insert(indexes.end(), statements.begin() + 1, statements.end());
    }
    fillPlan(database, options);
    fillPeople(database, options);
    for (const std::string& index : indexes) {
        options.checkpoint();
        database.execute(index);
    }
    for (const std::string& statement : companion::siteStatisticsStatements()) {
        database.execute(statement);
    }
    database.execute("COMMIT");
    return countRows(database);
}

} // namespace kintar::site
