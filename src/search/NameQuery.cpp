#include "search/NameQuery.h"

namespace kintar::search {
namespace {

constexpr std::string_view allNames =
    "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, Trace, "
    "Company.Name AS COMPNAME FROM [Names] LEFT JOIN Company ON [Names].LocGrp = Company.LocGrp "
    "AND [Names].Company = Company.Company WHERE [Names].LocGrp = ";

constexpr std::string_view guardTourNames =
    "SELECT DistinctRow [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, "
    "Trace, Company.Name AS COMPNAME FROM (Company Right Join ([Names] Left Join Cards On "
    "[Names].ID = Cards.NameID) ON [Names].LocGrp = Company.LocGrp AND [Names].Company = "
    "Company.Company) WHERE [Names].LocGrp = ";

} // namespace

std::string LoadNames(const NameCriteria& criteria, const NameQueryTexts& texts) {
    const bool guardTour = criteria.mode == guardTourMode;
    std::string sql(guardTour ? guardTourNames : allNames);
    sql += std::to_string(criteria.locGrp);
    if (guardTour) {
        sql += " And Cards.GTour <> 0";
    }
    if (!criteria.lastName.empty()) {
        sql += " AND LName LIKE " + texts.sqlText(criteria.lastName + "%");
    }
    if (!criteria.firstName.empty()) {
        sql += " AND FName LIKE " + texts.sqlText(criteria.firstName + "%");
    }
    sql += texts.companyFilter("[Names].Company", criteria.locGrp, true);
    sql += " ORDER BY LName, FName";
    return sql;
}

} // namespace kintar::search
