#include "companion/SiteSchema.h"

#include "companion/dialect/Keyword.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <utility>

namespace kintar::companion {

namespace {

using dialect::quotedName;

ColumnDefinition integer(std::string name) {
    return {std::move(name), ColumnType::Integer, KeyKind::None};
}

ColumnDefinition key(std::string name) {
    return {std::move(name), ColumnType::Integer, KeyKind::Key};
}

ColumnDefinition text(std::string name) {
    return {std::move(name), ColumnType::Text, KeyKind::None};
}

ColumnDefinition yesNo(std::string name) {
    return {std::move(name), ColumnType::YesNo, KeyKind::None};
}

ColumnDefinition dateTime(std::string name) {
    return {std::move(name), ColumnType::DateTime, KeyKind::None};
}

// Text indexes are NOCASE: a search for a prefix is a few ranges of such an index. The number a
// card code stands for has an index of its own, since codes are searched for as numbers too. The
// index of a card's uses holds what tells whether its holder is in, so that no row is looked at.
std::vector<TableDefinition> people() {
    return {
        {"Names",
         {key("ID"), text("LName"), text("FName"), integer("LocGrp"), integer("Company"),
          yesNo("Visitor"), yesNo("Trace")},
         {{"LocGrp, LName COLLATE NOCASE, FName COLLATE NOCASE", "50000 5 1"},
          {"LocGrp, FName COLLATE NOCASE", "50000 50"},
          {"LName COLLATE NOCASE, FName COLLATE NOCASE", "10 1"},
          {"FName COLLATE NOCASE", "100"}},
         200000},
        {"Company",
         {integer("LocGrp"), integer("Company"), text("Name")},
         {{"LocGrp, Company", "500 1"}},
         2000},
        {"Images",
         {integer("NameID"), integer("ImgType"), text("FileName")},
         {{"NameID, ImgType", "2 1"}},
         200000},
        {"UDF",
         {integer("NameID"), integer("UdfNum"), text("UdfText"), integer("LocGrp")},
         {{"NameID, UdfNum", "5 1"},
          {"UdfNum, UdfText COLLATE NOCASE, NameID", "50000 20 1"},
          {"LocGrp, NameID", "250000 5"}},
         1000000},
        {"Skills",
         {integer("NameID"), integer("SkillID")},
         {{"SkillID, NameID", "2000 1"}, {"NameID", "2"}},
         100000},
    };
}

std::vector<TableDefinition> cards() {
    return {
        {"Cards",
         {key("ID"), integer("NameID"), integer("LocGrp"), text("Code"), text("CardNum"),
          integer("Status"), dateTime("StartDate"), dateTime("StopDate"), yesNo("GTour"),
          integer("DlFlag")},
         {{"NameID", "2"},
          {"LocGrp, CAST(Code AS REAL)", "60000 1"},
          {"CAST(Code AS REAL)", "1"},
          {"LocGrp, Code COLLATE NOCASE", "60000 1"},
          {"LocGrp, CardNum COLLATE NOCASE", "60000 1"}},
         250000},
        {"LocCards",
         {key("ID"), integer("CardID"), integer("Loc"), dateTime("LastDate"), integer("LastDev"),
          text("Inout1"), text("Inout2"), text("Inout3"), text("Inout4")},
         {{"CardID, LastDate, Loc, Inout1, ID", "2 1 1 1 1"}, {"Loc, LastDate", "10000 2"}},
         500000},
    };
}

std::vector<TableDefinition> places() {
    return {
        {"Loc",
         {key("Loc"), integer("LocGrp"), text("Name"), text("TimeZone"), yesNo("DST")},
         {{"LocGrp", "10"}},
         50},
        {"Dev", {integer("Loc"), integer("Device"), text("Name")}, {{"Loc, Device", "20 1"}}, 1000},
        {"LocGrp", {key("LocGrp")}, {}, 5},
        {"ImageType",
         {integer("LocGrp"), integer("Num"), yesNo("DefaultImage")},
         {{"LocGrp, Num", "3 1"}},
         15},
        {"UdfName",
         {integer("LocGrp"), integer("UdfNum"), text("Name"), yesNo("Hidden")},
         {{"LocGrp, UdfNum", "20 1"}},
         100},
        {"SKillName", {key("ID"), text("Name"), integer("LocGrp")}, {{"LocGrp", "10"}}, 50},
        {"OvrSchedule",
         {{"ID", ColumnType::Integer, KeyKind::Assigned},
          integer("PointID"),
          integer("PointType"),
          integer("StartCmd"),
          integer("StopCmd"),
          dateTime("StartDate"),
          dateTime("StopDate"),
          text("Opr"),
          integer("OprID"),
          integer("Status")},
         {{"PointID", "5"}},
         1000},
        {"IO", {key("ID"), integer("Loc")}, {}, 2000},
        {"OvrGrpName", {key("ID"), integer("LocGrp")}, {}, 50},
    };
}

std::vector<TableDefinition> operatorsAndTexts() {
    return {
        {"OPR", {key("ID"), integer("PwProfile")}, {}, 50},
        {"PwProfile", {key("ID"), yesNo("AllMenus")}, {}, 10},
        {"MenuProfile",
         {integer("PwProfileID"), integer("MenuID"), integer("Loc"), yesNo("View")},
         {{"PwProfileID, MenuID", "1000 10"}},
         10000},
        {"FormData",
         {text("FORM"), integer("INDEX"), text("Caption"), integer("Width")},
         {{"FORM COLLATE NOCASE, \"INDEX\"", "10 1"}},
         100},
        {"OprCompany",
         {integer("OprID"), integer("LocGrp"), integer("Company")},
         {{"OprID, LocGrp, Company", "20 5 1"}},
         500},
        {"Texts", {key("Num"), text("Text")}, {}, 500},
    };
}

constexpr std::array<std::pair<ColumnType, std::string_view>, 5> declarations{{
    {ColumnType::Integer, "INTEGER"},
    {ColumnType::Real, "REAL"},
    {ColumnType::Text, "TEXT"},
    {ColumnType::YesNo, "YESNO"},
    {ColumnType::DateTime, "DATETIME"},
}};

std::string indexName(const TableDefinition& table, int number) {
    return table.name + "Index" + std::to_string(number);
}

std::string statistic(const TableDefinition& table, const std::string& index,
                      const std::string& figures) {
    return "INSERT INTO sqlite_stat1 (tbl, idx, stat) VALUES ('" + table.name + "', " + index +
           ", '" + figures + "')";
}

std::vector<std::string> statisticsOf(const TableDefinition& table) {
    const std::string rows = std::to_string(table.largeSiteRows);
    std::vector<std::string> statements;
    int number = 0;
    for (const IndexDefinition& index : table.indexes) {
        statements.push_back(
            statistic(table, "'" + indexName(table, ++number) + "'", rows + " " + index.sharing));
    }
    if (table.indexes.empty()) {
        statements.push_back(statistic(table, "NULL", rows));
    }
    return statements;
}

std::string columnClause(const ColumnDefinition& column) {
    std::string clause = quotedName(column.name) + ' ' + std::string(declaredType(column.type));
    if (column.key != KeyKind::None) {
        clause += " PRIMARY KEY";
    }
    if (column.key == KeyKind::Assigned) {
        clause += " AUTOINCREMENT";
    }
    return clause;
}

} // namespace

const std::vector<TableDefinition>& siteTables() {
    static const std::vector<TableDefinition> tables = [] {
        std::vector<TableDefinition> all;
        for (auto part : {people(), cards(), places(), operatorsAndTexts()}) {
            std::ranges::move(part, std::back_inserter(all));
        }
        return all;
    }();
    return tables;
}

std::string_view declaredType(ColumnType type) {
    for (const auto& [known, declaration] : declarations) {
        if (known == type) {
            return declaration;
        }
    }
    return "";
}

ColumnType columnTypeOf(std::string_view declaration) {
    const auto sameLetter = [](char a, char b) {
        return std::toupper(static_cast<unsigned char>(a)) == b;
    };
    for (const auto& [type, known] : declarations) {
        if (std::ranges::equal(declaration, known, sameLetter)) {
            return type;
        }
    }
    return ColumnType::Any;
}

std::vector<std::string> createStatements(const TableDefinition& table) {
    std::string columns;
    for (const ColumnDefinition& column : table.columns) {
        columns += (columns.empty() ? "" : ", ") + columnClause(column);
    }
    std::vector<std::string> statements{"CREATE TABLE " + quotedName(table.name) + " (" + columns +
                                        ")"};
    int number = 0;
    for (const IndexDefinition& index : table.indexes) {
        statements.push_back("CREATE INDEX " + quotedName(indexName(table, ++number)) + " ON " +
                             quotedName(table.name) + " (" + index.columns + ")");
    }
    return statements;
}

std::vector<std::string> siteSchemaStatements() {
    std::vector<std::string> statements;
    for (const TableDefinition& table : siteTables()) {
        std::ranges::move(createStatements(table), std::back_inserter(statements));
    }
    std::ranges::move(siteStatisticsStatements(), std::back_inserter(statements));
    return statements;
}

std::vector<std::string> siteStatisticsStatements() {
    // The engine keeps such figures in a table that analysing nothing makes.
    std::vector<std::string> statements{"ANALYZE sqlite_schema"};
    for (const TableDefinition& table : siteTables()) {
        std::ranges::move(statisticsOf(table), std::back_inserter(statements));
    }
    return statements;
}

} // namespace kintar::companion
