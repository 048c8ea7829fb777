#include "search/SelectionCompanion.h"

#include "base/RunTimeError.h"

namespace kintar::selection {
namespace {

TarnSys& systemOf(const modGlobals& globals) {
    if (!globals.gSys) {
        throw RunTimeError::objectNotSet();
    }
    return *globals.gSys;
}

Recordset open(modGlobals& globals, const std::string& sql) {
    return globals.tarnRec().OpenRecordset(sql, globals.gCnn());
}

} // namespace

std::string SelectionCompanion::SqlText(std::string_view text) {
    return globals_.tarnRec().SqlText(text);
}

std::string SelectionCompanion::SqlDate(DateTime value) {
    return globals_.tarnRec().SqlDate(value);
}

std::string SelectionCompanion::CompanyFilter(std::string_view column, std::int32_t locGrp,
                                              bool flag) {
    return systemOf(globals_).CompanyFilter(column, locGrp, flag);
}

std::vector<std::int32_t> SelectionCompanion::readLocations(const std::string& sql) {
    std::vector<std::int32_t> locations;
    for (Recordset rows = open(globals_, sql); !rows.atEnd(); rows.MoveNext()) {
        locations.push_back(rows.field("Loc").asLong());
    }
    return locations;
}

std::string companyListQuery(std::int32_t locGrp, const std::string& companyFilterSql) {
    return "SELECT Name, Company FROM Company WHERE LocGrp = " + std::to_string(locGrp) +
           companyFilterSql + " ORDER BY Name";
}

std::string udfNamesQuery(std::int32_t locGrp) {
    return "SELECT * FROM UdfName WHERE LocGrp = " + std::to_string(locGrp) + " ORDER BY UdfNum";
}

std::string skillsQuery(std::int32_t locGrp) {
    return "Select ID, Name From SKillName Where LocGrp = " + std::to_string(locGrp);
}

std::vector<UdfName> readUdfNames(modGlobals& globals, std::int32_t locGrp) {
    std::vector<UdfName> names;
    for (Recordset rows = open(globals, udfNamesQuery(locGrp)); !rows.atEnd(); rows.MoveNext()) {
        names.push_back({rows.field("UdfNum").asLong(), rows.field("Name").text()});
    }
    return names;
}

std::vector<Skill> readSkills(modGlobals& globals, std::int32_t locGrp) {
    std::vector<Skill> skills;
    for (Recordset rows = open(globals, skillsQuery(locGrp)); !rows.atEnd(); rows.MoveNext()) {
        skills.push_back({rows.field("ID").text() + "ID", rows.field("Name").text()});
    }
    return skills;
}

void fillCompanies(modGlobals& globals, std::int32_t locGrp, ListBox& list) {
    const std::string filter = systemOf(globals).CompanyFilter("Company", locGrp, true);
    Recordset rows = open(globals, companyListQuery(locGrp, filter));
    globals.tarnRec().FillListBox(list, rows, "Name", "COMPANY");
}

} // namespace kintar::selection
