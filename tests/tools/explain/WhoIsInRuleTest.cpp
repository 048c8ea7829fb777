#include "tools/explain/Rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace kintar::explain {
namespace {

using ::testing::HasSubstr;

std::string answerTo(const std::string& line) {
    const auto rule = std::ranges::find(rules(), "who-is-in", &Rule::name);
    return answerLine(*rule, line);
}

const std::string tables =
    R"("tables":{"loc":[{"Loc":31,"LocGrp":3,"Name":"North"},{"Loc":32,"LocGrp":3}],)"
    R"("Cards":[{"ID":1,"NameID":9,"LocGrp":3,"Status":1},{"ID":2,"NameID":9,"LocGrp":3,)"
    R"("Status":true}],"LocCards":[{"ID":5,"CardID":1,"Loc":31,"LastDate":"2012-03-12T17:05:01",)"
    R"("LastDev":1,"Inout1":"I"},{"ID":6,"CardID":2,"Loc":31,"LastDate":"2012-03-12T17:05:00",)"
    R"("LastDev":1,"Inout1":"I"}],"Dev":[{"Loc":31,"Device":1,"Name":"Gate"}],)"
    R"("Names":[{"ID":9,"LName":"O'Brien","FName":"Ann","LocGrp":3,"Company":null}]})";

std::string line(const std::string& more) {
    return R"({"id":1,"loc":31,"now":"2012-03-14T17:05:00",)" + more + tables + "}";
}

TEST(WhoIsInRule, GivesRowsTotalsAndStatements) {
    EXPECT_EQ(
        answerTo(line("")),
        R"({"id":1,"builds":[{"rows":[{"Loc":31,"LocName":"North","Dev":1,"DevName":"Gate",)"
        R"("Name":"O'Brien, Ann","Company":"","LastUsed":"2012-03-12T17:05:01"}],)"
        R"("totals":[{"Loc":31,"Dev":1,"DevTotal":1,"LocGrpTotal":1}],"totalStatements":)"
        R"json(["Insert Into Totals (Loc, Dev, DevTotal, LocGrpTotal) Values (31, 1, 1, 1)"],)json"
        R"("inCount":1,"printer":"","locationList":"31, 32"}]})");
}

TEST(WhoIsInRule, CountsOnOverTheBuildsOfALineAndNotOverLines) {
    EXPECT_THAT(answerTo(line(R"("builds":2,)")), HasSubstr(R"("inCount":2)"));
    EXPECT_THAT(answerTo(line("")), HasSubstr(R"("inCount":1)"));
}

TEST(WhoIsInRule, AppliesThePrinterMap) {
    const std::string answer = answerTo(line(R"("map":"0,31,;Gate Printer\r\n",)"));
    EXPECT_THAT(answer, HasSubstr(R"("printer":"Gate Printer","locationList":"0,31")"));
}

TEST(WhoIsInRule, SaysWhichRoutineFailed) {
    EXPECT_THAT(answerTo(line(R"("map":"x,31,;P",)")),
                HasSubstr(R"("error":"objInRpt/PopulateTable: )"));
}

TEST(WhoIsInRule, RefusesWhatItCannotRead) {
    EXPECT_THAT(answerTo(R"({"id":1,"loc":31,"now":"2012-03-14T17:05:00"})"),
                HasSubstr("'tables'"));
    EXPECT_THAT(answerTo(line(R"("builds":0,)")), HasSubstr("'builds'"));
    EXPECT_THAT(answerTo(R"({"loc":31,"now":"2012-03-14","tables":{"Loc":[{"Nothing":1}]}})"),
                HasSubstr("'Nothing' is no column of 'Loc'"));
    EXPECT_THAT(answerTo(R"({"loc":31,"now":"2012-03-14",)"
                         R"("tables":{"LocCards":[{"LastDate":"2012-03-14T17:05"}]}})"),
                HasSubstr("'LastDate' is not a date"));
}

TEST(WhoIsInRule, BuildsOnceWhereNothingIsSaid) {
    EXPECT_EQ(answerTo(line(R"("builds":null,"map":null,)")), answerTo(line("")));
}

} // namespace
} // namespace kintar::explain
