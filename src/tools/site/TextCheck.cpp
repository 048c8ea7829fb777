#include "tools/site/TextCheck.h"

#include "base/Unicode.h"

namespace kintar::site {

void checkUtf8(SiteDatabase& database, const std::string& table, const std::string& column,
               Findings& findings) {
    const std::string name = '"' + column + '"';
    // The database passes over what is plain ASCII: that is most of it.
    SiteStatement query(database, "SELECT rowid, " + name + " FROM \"" + table + "\" WHERE " +
                                      name + " GLOB '*[^ -~]*' ORDER BY rowid");
    query.start();
    long long rows = 0;
    std::string first;
    while (query.next()) {
        const std::string text = query.text(1);
        if (unicode::toValidUtf8(text) != text && ++rows == 1) {
            first = query.text(0);
        }
    }
    if (rows > 0) {
        findings.add(table + '.' + column, std::to_string(rows) +
                                               (rows == 1 ? " row holds" : " rows hold") +
                                               " text that is no UTF-8 (first: row " + first + ")");
    }
}

void checkZoneNames(SiteDatabase& database, const KnowsZone& knowsZone, Findings& findings) {
    SiteStatement query(database,
                        "SELECT Loc, TimeZone FROM Loc WHERE TimeZone <> '' ORDER BY Loc");
    query.start();
    while (query.next()) {
        const std::string zone = query.text(1);
        if (!knowsZone(zone)) {
            findings.add("Loc.TimeZone",
                         "location " + query.text(0) + ": the system knows no zone '" + zone + "'");
        }
    }
}

} // namespace kintar::site
