#include "tools/explain/Rules.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace kintar::explain {
namespace {

Json answered(const std::string& line) {
    const auto rule = std::ranges::find(rules(), "in-out", &Rule::name);
    return Json::parse(answerLine(*rule, line));
}

constexpr const char* start =
    R"({"id":1,"names":[{"ID":1,"Name":"Ash, A"},{"ID":2,"Name":"Birch"}],)";

TEST(InOutRule, TakesTheMostRecentUseOfAnActiveCard) {
    const Json answer = answered(
        std::string(start) +
        R"("locale":"en-US","tables":{"Cards":[{"ID":5,"NameID":1,"Status":1},)"
        R"({"ID":6,"NameID":1,"Status":0},{"ID":7,"NameID":1,"Status":2},{"ID":8,"NameID":2,"Status":1}],)"
        R"("LocCards":[{"CardID":5,"Loc":11,"LastDate":"2012-03-14T17:05:00","LastDev":7,"Inout2":"I"},)"
        R"({"CardID":6,"Loc":12,"LastDate":"2012-03-15","LastDev":8,"Inout1":"O"},)"
        R"({"CardID":7,"Loc":13,"LastDate":"2012-03-14 17:04:59","LastDev":9,"Inout1":"O"}]}})");
    EXPECT_EQ(answer,
              Json::parse(R"({"id":1,"items":[{"ID":1,"icon":1,"sort":"1Ash, A","lastLoc":11,)"
                          R"("lastDev":7,"lastDate":"3/14/2012 5:05:00 PM"},)"
                          R"({"ID":2,"icon":2,"sort":"2Birch","lastLoc":0,"lastDev":0,)"
                          R"("lastDate":""}],"in":1,"out":1})"));
}

TEST(InOutRule, AnUnknownDateCountsAsTheOldest) {
    const Json answer =
        answered(std::string(start) +
                 R"("tables":{"Cards":[{"ID":5,"NameID":1,"Status":1}],)"
                 R"("LocCards":[{"CardID":5,"Loc":11,"LastDate":null,"Inout1":"I"},)"
                 R"({"CardID":5,"Loc":12,"LastDate":"2012-03-14","LastDev":"x","Inout1":"O"}]}})");
    EXPECT_EQ(answer["items"][0]["icon"], 2);
    EXPECT_EQ(answer["items"][0]["lastLoc"], 12);
    EXPECT_EQ(answer["items"][0]["lastDev"], 0);
    EXPECT_EQ(answer["items"][0]["lastDate"], "3/14/2012");
}

TEST(InOutRule, WhereTwoUsesAreEqualTheFirstCounts) {
    const Json answer =
        answered(std::string(start) +
                 R"("tables":{"Cards":[{"ID":6,"NameID":1,"Status":1},{"ID":5,"NameID":1,)"
                 R"("Status":1}],"LocCards":[{"CardID":5,"Loc":11,"LastDate":"2012-03-14"},)"
                 R"({"CardID":6,"Loc":12,"LastDate":"2012-03-14T00:00:00"},)"
                 R"({"CardID":6,"Loc":13,"LastDate":"2012-03-14"}]}})");
    EXPECT_EQ(answer["items"][0]["lastLoc"], 12);
}

TEST(InOutRule, RowsAreJoinedByNumberAndNeverByNull) {
    const Json answer =
        answered(R"({"names":[{"id":1,"NAME":"Ash"}],"tables":{"Cards":[{"NameID":1,"Status":1},)"
                 R"({"NameID":null,"Status":1}],"LocCards":[{"Loc":11,"Inout1":"I"},)"
                 R"({"CardID":null,"Loc":12,"Inout1":"I"}]}})");
    EXPECT_EQ(answer["items"][0]["sort"], "2Ash");
    EXPECT_EQ(answer["items"][0]["lastLoc"], 0);
    EXPECT_EQ(answer["items"][0]["icon"], 2);
}

TEST(InOutRule, WhatIsNoDateIsAnError) {
    for (const char* date : {"\"14.3.2012\"", "\"2012-03-14T17:05\"", "5", "\"\""}) {
        EXPECT_TRUE(answered(std::string(start) +
                             R"("tables":{"Cards":[{"ID":5,"NameID":1,"Status":1}],)"
                             R"("LocCards":[{"CardID":5,"LastDate":)" +
                             date + "}]}}")["error"]
                        .get<std::string>()
                        .starts_with("'LastDate' is not"))
            << date;
    }
}

TEST(InOutRule, ASecondNameWithTheSameIdIsAnError) {
    const Json answer =
        answered(R"({"id":3,"names":[{"ID":1,"Name":"a"},{"ID":1,"Name":"b"}],"tables":{}})");
    EXPECT_TRUE(answer["error"].get<std::string>().starts_with("Run-time error '457'"));
}

TEST(InOutRule, TablesThatAreMissingOrNoTablesAreAnError) {
    for (const char* line : {R"({"id":1,"names":[]})", R"({"id":1,"names":[],"tables":[]})",
                             R"({"id":1,"names":[],"tables":{"Cards":[1]}})"}) {
        EXPECT_TRUE(answered(line).contains("error")) << line;
    }
}

} // namespace
} // namespace kintar::explain
