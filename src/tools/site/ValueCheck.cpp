#include "tools/site/ValueCheck.h"

#include "companion/SiteSchema.h"
#include "tools/site/SchemaCheck.h"
#include "tools/site/SiteError.h"
#include "tools/site/TextCheck.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::site {

namespace {

struct Rule {
    std::string condition; ///< of a row that breaks it
    std::string_view words;
};

Rule ruleFor(ColumnType type, const std::string& column) {
    switch (type) {
    case ColumnType::YesNo:
        return {"typeof(" + column + ") NOT IN ('integer', 'null') OR " + column +
                    " NOT IN (-1, 0)",
                "neither -1 nor 0 nor Null"};
    case ColumnType::DateTime:
        // Adding no days moves a day that does not exist into the next month: the texts differ
        // then.
        return {"typeof(" + column + ") <> 'null' AND (typeof(" + column +
                    ") <> 'text' OR datetime(" + column + ", '+0 days') IS NOT " + column + ")",
                "no date-time such as 2012-03-14 17:05:00"};
    case ColumnType::Integer:
        return {"typeof(" + column + ") NOT IN ('integer', 'null') OR " + column +
                    " NOT BETWEEN -2147483648 AND 2147483647",
                "no whole number of 32 bits"};
    default:
        return {"typeof(" + column + ") NOT IN ('text', 'null')", "no text"};
    }
}

std::string countWords(long long count) {
    return std::to_string(count) + (count == 1 ? " row holds " : " rows hold ");
}

void checkColumn(SiteDatabase& database, const companion::TableDefinition& table,
                 const companion::ColumnDefinition& column, Findings& findings) {
    const Rule rule = ruleFor(column.type, '"' + column.name + '"');
    SiteStatement query(database, "SELECT count(*), min(rowid) FROM \"" + table.name + "\" WHERE " +
                                      rule.condition);
    query.start();
    if (query.next() && query.integer(0) > 0) {
        findings.add(table.name + '.' + column.name, countWords(query.integer(0)) +
                                                         std::string(rule.words) + " (first: row " +
                                                         query.text(1) + ")");
    }
}

/// A query whose rows, of one column each, are the findings.
struct Relation {
    std::string_view where;
    std::string_view sql;
    std::string_view before; ///< the column's value stands between these two
    std::string_view after;
};

constexpr std::array<Relation, 10> relations{{
    {"ImageType",
     "SELECT LocGrp FROM ImageType WHERE DefaultImage <> 0 GROUP BY LocGrp HAVING count(*) > 1",
     "group ", " has more than one default image type"},
    {"OPR",
     "SELECT ID FROM OPR WHERE PwProfile IS NULL OR PwProfile NOT IN (SELECT ID FROM PwProfile)",
     "the profile of operator ", " is missing"},
    {"MenuProfile",
     "SELECT DISTINCT PwProfileID FROM MenuProfile WHERE PwProfileID NOT IN (SELECT ID FROM "
     "PwProfile)",
     "has rows of profile ", ", which is missing"},
    {"OprCompany", "SELECT DISTINCT OprID FROM OprCompany WHERE OprID NOT IN (SELECT ID FROM OPR)",
     "has rows of operator ", ", who is missing"},
    {"Loc", "SELECT Loc FROM Loc WHERE LocGrp IS NULL OR LocGrp NOT IN (SELECT LocGrp FROM LocGrp)",
     "the group of location ", " is missing from LocGrp"},
    {"Dev", "SELECT DISTINCT Loc FROM Dev WHERE Loc NOT IN (SELECT Loc FROM Loc)",
     "has devices of location ", ", which is missing"},
    {"Dev", "SELECT Loc || '/' || Device FROM Dev GROUP BY Loc, Device HAVING count(*) > 1",
     "location and device ", " have more than one row"},
    {"Cards",
     "SELECT ID FROM Cards WHERE NameID IS NOT NULL AND NameID NOT IN (SELECT ID FROM Names)",
     "the person of card ", " is missing"},
    {"LocCards", "SELECT ID FROM LocCards WHERE CardID NOT IN (SELECT ID FROM Cards)",
     "the card of row ", " is missing"},
    {"Images", "SELECT DISTINCT NameID FROM Images WHERE NameID NOT IN (SELECT ID FROM Names)",
     "has photos of person ", ", who is missing"},
}};

} // namespace

void checkValues(SiteDatabase& database, Findings& findings) {
    for (const companion::TableDefinition& table : companion::siteTables()) {
        for (const companion::ColumnDefinition& column : table.columns) {
            if (!hasColumn(database, table.name, column.name)) {
                continue;
            }
            try {
                checkColumn(database, table, column, findings);
                if (column.type == ColumnType::Text) {
                    checkUtf8(database, table.name, column.name, findings);
                }
            } catch (const SiteError& error) {
                findings.add(table.name + '.' + column.name, error.what());
            }
        }
    }
}

void checkRelations(SiteDatabase& database, Findings& findings) {
    for (const Relation& relation : relations) {
        try {
            SiteStatement query(database, std::string(relation.sql));
            query.start();
            while (query.next()) {
                findings.add(relation.where, std::string(relation.before) + query.text(0) +
                                                 std::string(relation.after));
            }
        } catch (const SiteError& error) {
            findings.add(relation.where, error.what());
        }
    }
}

} // namespace kintar::site
