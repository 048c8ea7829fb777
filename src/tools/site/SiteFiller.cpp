#include "tools/site/SiteFiller.h"

#include "companion/SiteSchema.h"
#include "tools/site/PeopleFiller.h"
#include "tools/site/PlanFiller.h"

#include <vector>

namespace kintar::site {

RowCounts countRows(SiteDatabase& database) {
    RowCounts counts;
    for (const companion::TableDefinition& table : companion::siteTables()) {
        SiteStatement count(database, "SELECT count(*) FROM " + table.name);
        count.start();
        count.next();
        counts[table.name] = count.integer(0);
    }
    return counts;
}

void fillSite(SiteLoader& loader, const SiteOptions& options) {
    loader.createTables();
    fillPlan(loader, options);
    fillPeople(loader, options);
    loader.createIndexes(options.checkpoint);
}

} // namespace kintar::site
