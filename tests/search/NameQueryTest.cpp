#include "search/NameQuery.h"

#include "search/TableTwin.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using testing::TableTwin;

struct Asked {
    std::string column;
    std::int32_t locGrp = 0;
    bool flag = false;
};

std::string loadNames(const NameCriteria& criteria, const std::string& companyFilter = {},
                      Asked* asked = nullptr) {
    return LoadNames(criteria,
                     {.sqlText = [](std::string_view text) { return TableTwin().SqlText(text); },
                      .companyFilter =
                          [&](std::string_view column, std::int32_t locGrp, bool flag) {
                              if (asked != nullptr) {
                                  *asked = {std::string(column), locGrp, flag};
                              }
                              return companyFilter;
                          }});
}

const std::string allNamesOf12 =
    "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, Trace, "
    "Company.Name AS COMPNAME FROM [Names] LEFT JOIN Company ON [Names].LocGrp = Company.LocGrp "
    "AND [Names].Company = Company.Company WHERE [Names].LocGrp = 12";

const std::string guardTourNamesOf12 =
    "SELECT DistinctRow [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, "
    "Trace, Company.Name AS COMPNAME FROM (Company Right Join ([Names] Left Join Cards On "
    "[Names].ID = Cards.NameID) ON [Names].LocGrp = Company.LocGrp AND [Names].Company = "
    "Company.Company) WHERE [Names].LocGrp = 12 And Cards.GTour <> 0";

TEST(NameQuery, EmptyBoxesListAllNamesOfTheGroup) {
    EXPECT_EQ(loadNames({.locGrp = 12, .mode = 0, .lastName = "", .firstName = ""}),
              allNamesOf12 + " ORDER BY LName, FName");
}

TEST(NameQuery, EmptyBoxesListAllGuardTourNamesInModeTwo) {
    EXPECT_EQ(loadNames({.locGrp = 12, .mode = 2, .lastName = "", .firstName = ""}),
              guardTourNamesOf12 + " ORDER BY LName, FName");
}

TEST(NameQuery, OnlyModeTwoAsksForGuardTours) {
    for (const std::int16_t mode :
         std::initializer_list<std::int16_t>{-32768, -1, 0, 1, 3, 32767}) {
        EXPECT_EQ(loadNames({.locGrp = 12, .mode = mode, .lastName = "", .firstName = ""}),
                  allNamesOf12 + " ORDER BY LName, FName")
            << mode;
    }
}

TEST(NameQuery, BothBoxesAreMatchedByPrefixLastNameFirst) {
    EXPECT_EQ(loadNames({.locGrp = 12, .mode = 0, .lastName = "Mo", .firstName = "An"}),
              allNamesOf12 + " AND LName LIKE 'Mo%' AND FName LIKE 'An%' ORDER BY LName, FName");
    EXPECT_EQ(loadNames({.locGrp = 12, .mode = 2, .lastName = "Mo", .firstName = "An"}),
              guardTourNamesOf12 +
                  " AND LName LIKE 'Mo%' AND FName LIKE 'An%' ORDER BY LName, FName");
}

TEST(NameQuery, EachBoxAloneAddsItsOwnCondition) {
    EXPECT_EQ(loadNames({.locGrp = 12, .mode = 0, .lastName = "Mo", .firstName = ""}),
              allNamesOf12 + " AND LName LIKE 'Mo%' ORDER BY LName, FName");
    EXPECT_EQ(loadNames({.locGrp = 12, .mode = 1, .lastName = "", .firstName = "An"}),
              allNamesOf12 + " AND FName LIKE 'An%' ORDER BY LName, FName");
}

TEST(NameQuery, HostileTextIsQuotedAndOtherwiseKept) {
    const std::string longText(100000, 'x');
    const std::string withNul("a\0b", 3);
    for (const std::string& text : {std::string("O'Brien"), std::string("%"), std::string("[a-c]%"),
                                    std::string("_"), std::string("\\"), std::string(" "), withNul,
                                    longText, std::string("'; DROP TABLE Names --")}) {
        EXPECT_EQ(loadNames({.locGrp = 12, .mode = 0, .lastName = text, .firstName = text}),
                  allNamesOf12 + " AND LName LIKE " + TableTwin().SqlText(text + "%") +
                      " AND FName LIKE " + TableTwin().SqlText(text + "%") +
                      " ORDER BY LName, FName");
    }
    EXPECT_EQ(loadNames({.locGrp = 12, .mode = 0, .lastName = "O'Brien", .firstName = ""}),
              allNamesOf12 + " AND LName LIKE 'O''Brien%' ORDER BY LName, FName");
}

TEST(NameQuery, TheCompanyRestrictionStandsBetweenTheBoxesAndTheOrder) {
    Asked asked;
    EXPECT_EQ(loadNames({.locGrp = -7, .mode = 0, .lastName = "Mo", .firstName = ""},
                        " AND [Names].Company IN (0, 4)", &asked),
              "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, Trace, "
              "Company.Name AS COMPNAME FROM [Names] LEFT JOIN Company ON [Names].LocGrp = "
              "Company.LocGrp AND [Names].Company = Company.Company WHERE [Names].LocGrp = -7 AND "
              "LName LIKE 'Mo%' AND [Names].Company IN (0, 4) ORDER BY LName, FName");
    EXPECT_EQ(asked.column, "[Names].Company");
    EXPECT_EQ(asked.locGrp, -7);
    EXPECT_TRUE(asked.flag);
}

} // namespace
} // namespace kintar::search
