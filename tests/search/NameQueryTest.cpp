#include "search/NameQuery.h"

#include "search/TableTwin.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

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

/// A text of the boxes, and its literal without the quotes and the wildcard behind it.
using Quoted = std::pair<std::string, std::string>;

const std::vector<Quoted> hostileTexts = {
    {"O'Brien", "O''Brien"},
    {"''", "''''"},
    {"%", "%"},
    {"[a-c]%", "[a-c]%"},
    {"_", "_"},
    {"\\", "\\"},
    {"\"", "\""},
    {" ", " "},
    {"\u05d0\u202e", "\u05d0\u202e"},
    {std::string("a\0b", 3), std::string("a\0b", 3)},
    {std::string(100000, 'x'), std::string(100000, 'x')},
    {std::string(100000, '\''), std::string(200000, '\'')},
    {"'; DROP TABLE Names --", "''; DROP TABLE Names --"},
};

TEST(NameQuery, HostileTextIsQuotedAndOtherwiseKept) {
    for (const auto& [text, quoted] : hostileTexts) {
        const std::string last = " AND LName LIKE '" + quoted + "%'";
        const std::string first = " AND FName LIKE '" + quoted + "%'";
        for (const std::string restriction : {"", " AND [Names].Company IN (0, 4)"}) {
            const std::string end = restriction + " ORDER BY LName, FName";
            for (const std::int16_t mode : std::initializer_list<std::int16_t>{0, 1, 2}) {
                const std::string start = mode == 2 ? guardTourNamesOf12 : allNamesOf12;
                const auto statement = [&](const std::string& lName, const std::string& fName) {
                    return loadNames(
                        {.locGrp = 12, .mode = mode, .lastName = lName, .firstName = fName},
                        restriction);
                };
                EXPECT_EQ(statement(text, ""), start + last + end);
                EXPECT_EQ(statement("", text), start + first + end);
                EXPECT_EQ(statement(text, text), start + last + first + end);
            }
        }
    }
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
