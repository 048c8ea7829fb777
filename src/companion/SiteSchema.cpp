#include "companion/SiteSchema.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace kintar::companion {

namespace {

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
// card code stands for has an index of its own, since codes are searched for as numbers too.
std::vector<TableDefinition> peopleAndCards() {
    return {
        {"Names",
         {key("ID"), text("LName"), text("FName"), integer("LocGrp"), integer("Company"),
          yesNo("Visitor"), yesNo("Trace")},
         {"LocGrp, LName COLLATE NOCASE, FName COLLATE NOCASE", "LocGrp, FName COLLATE NOCASE",
          "LName COLLATE NOCASE, FName COLLATE NOCASE", "FName COLLATE NOCASE"}},
        {"Company", {integer("LocGrp"), integer("Company"), text("Name")}, {"LocGrp, Company"}},
        {"Cards",
         {key("ID"), integer("NameID"), integer("LocGrp"), text("Code"), text("CardNum"),
          integer("Status"), dateTime("StartDate"), dateTime("StopDate"), yesNo("GTour"),
          integer("DlFlag")},
         {"NameID", "LocGrp, CAST(Code AS REAL)", "CAST(Code AS REAL)",
          "LocGrp, Code COLLATE NOCASE", "LocGrp, CardNum COLLATE NOCASE"}},
        {"LocCards",
         {key("ID"), integer("CardID"), integer("Loc"), dateTime("LastDate"), integer("LastDev"),
          text("Inout1"), text("Inout2"), text("Inout3"), text("Inout4")},
         {"CardID, LastDate", "Loc, LastDate"}},
        {"Images", {integer("NameID"), integer("ImgType"), text("FileName")}, {"NameID, ImgType"}},
        {"UDF",
         {integer("NameID"), integer("UdfNum"), text("UdfText"), integer("LocGrp")},
         {"NameID, UdfNum", "UdfNum, UdfText COLLATE NOCASE, NameID", "LocGrp, NameID"}},
        {"Skills", {integer("NameID"), integer("SkillID")}, {"SkillID, NameID", "NameID"}},
    };
}

std::vector<TableDefinition> placesAndSettings() {
    return {
        {"Loc",
         {key("Loc"), integer("LocGrp"), text("Name"), text("TimeZone"), yesNo("DST")},
         {"LocGrp"}},
        {"Dev", {integer("Loc"), integer("Device"), text("Name")}, {"Loc, Device"}},
        {"LocGrp", {key("LocGrp")}, {}},
        {"ImageType", {integer("LocGrp"), integer("Num"), yesNo("DefaultImage")}, {"LocGrp, Num"}},
        {"UdfName",
         {integer("LocGrp"), integer("UdfNum"), text("Name"), yesNo("Hidden")},
         {"LocGrp, UdfNum"}},
        {"SKillName", {key("ID"), text("Name"), integer("LocGrp")}, {"LocGrp"}},
        {"OPR", {key("ID"), integer("PwProfile")}, {}},
        {"PwProfile", {key("ID"), yesNo("AllMenus")}, {}},
        {"MenuProfile",
         {integer("PwProfileID"), integer("MenuID"), integer("Loc"), yesNo("View")},
         {"PwProfileID, MenuID"}},
        {"FormData",
         {text("FORM"), integer("INDEX"), text("Caption"), integer("Width")},
         {"FORM COLLATE NOCASE, \"INDEX\""}},
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
         {"PointID"}},
        {"IO", {key("ID"), integer("Loc")}, {}},
        {"OvrGrpName", {key("ID"), integer("LocGrp")}, {}},
        {"OprCompany",
         {integer("OprID"), integer("LocGrp"), integer("Company")},
         {"OprID, LocGrp, Company"}},
        {"Texts", {key("Num"), text("Text")}, {}},
    };
}

constexpr std::array<std::pair<ColumnType, std::string_view>, 5> declarations{{
    {ColumnType::Integer, "INTEGER"},
    {ColumnType::Real, "REAL"},
    {ColumnType::Text, "TEXT"},
    {ColumnType::YesNo, "YESNO"},
    {ColumnType::DateTime, "DATETIME"},
}};

std::string quoted(const std::string& name) {
    return '"' + name + '"';
}

std::string columnClause(const ColumnDefinition& column) {
    std::string clause = quoted(column.name) + ' ' + std::string(declaredType(column.type));
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
        std::vector<TableDefinition> all = peopleAndCards();
        std::vector<TableDefinition> rest = placesAndSettings();
        std::move(rest.begin(), rest.end(), std::back_inserter(all));
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
    std::vector<std::string> statements{"CREATE TABLE " + quoted(table.name) + " (" + columns +
                                        ")"};
    int number = 0;
    for (const std::string& index : table.indexes) {
        const std::string name = table.name + "Index" + std::to_string(++number);
        statements.push_back("CREATE INDEX " + quoted(name) + " ON " + quoted(table.name) + " (" +
                             index + ")");
    }
    return statements;
}

std::vector<std::string> siteSchemaStatements() {
    std::vector<std::string> statements;
    for (const TableDefinition& table : siteTables()) {
        std::vector<std::string> made = createStatements(table);
        std::move(made.begin(), made.end(), std::back_inserter(statements));
    }
    return statements;
}

} // namespace kintar::companion
