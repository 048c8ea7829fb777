#include "tools/explain/Rules.h"

#include <algorithm>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace kintar::explain {
namespace {

Json ask(std::string_view rule, std::string_view line) {
    const auto found = std::ranges::find(rules(), rule, &Rule::name);
    EXPECT_NE(found, rules().end()) << rule;
    return Json::parse(answerLine(*found, line));
}

std::string rawAnswer(std::string_view rule, std::string_view line) {
    return answerLine(*std::ranges::find(rules(), rule, &Rule::name), line);
}

TEST(Explain, AnswersANumberInEachReading) {
    EXPECT_EQ(rawAnswer("number", R"json({"id":1,"text":"30 days","reading":"leading"})json"),
              R"json({"id":1,"value":30})json");
    EXPECT_EQ(rawAnswer("number", R"json({"id":"a","text":" 0012 ","reading":"whole"})json"),
              R"json({"id":"a","value":12})json");
    EXPECT_EQ(rawAnswer("number",
                        R"json({"id":2,"text":"12345678901234567890","reading":"numeric"})json"),
              R"json({"id":2,"value":12345678901234567890})json");
    EXPECT_EQ(ask("number", R"json({"id":3,"text":"abc","reading":"whole"})json")["error"],
              "Run-time error '13': Type mismatch");
    EXPECT_EQ(ask("number", R"json({"id":3,"text":"12,5","reading":"numeric"})json")["error"],
              "not numeric");
}

TEST(Explain, ALineThatCannotBeReadGivesAnErrorWithItsId) {
    EXPECT_EQ(ask("number", R"json({"id":7,"reading":"whole"})json")["error"], "'text' is missing");
    EXPECT_EQ(ask("number", R"json({"id":7,"reading":"whole"})json")["id"], 7);
    EXPECT_EQ(ask("number", R"json({"id":7,"text":5,"reading":"whole"})json")["error"],
              "'text' is not a text");
    EXPECT_TRUE(ask("number", "no JSON")["id"].is_null());
    EXPECT_TRUE(ask("number", "no JSON").contains("error"));
    EXPECT_TRUE(ask("number", "[1]").contains("error"));
    EXPECT_TRUE(ask("number", "").contains("error"));
    EXPECT_TRUE(
        ask("number", "{\"id\":1,\"text\":\"\xFF\",\"reading\":\"whole\"}").contains("error"));
}

TEST(Explain, ALineThatBreaksBehindItsIdKeepsIt) {
    for (const std::string rest :
         {R"(,"text":)", R"(,"text":NaN})", R"(,"x":1e400})", ",\"x\":\"\xFF\"}", R"(,"x":[1,2})",
          R"(,"x":"\uD800"})", "", "} }"}) {
        for (const std::string id : {"7", "-7", "7.5", "true", "\"seven\""}) {
            EXPECT_EQ(ask("number", R"({"x":[{"id":8}],"id":)" + id + rest)["id"].dump(), id)
                << rest;
        }
    }
    for (const char* line :
         {R"({"x":{"id":7},)", R"([{"id":7}])", R"({"id":{"id":7},)", R"({"id":[7],"y":)",
          R"({"id":NaN})", R"({"id":)", R"({"text":"id")"}) {
        EXPECT_TRUE(ask("number", line)["id"].is_null()) << line;
    }
}

TEST(Explain, ALineThatNestsTooDeepGivesAnError) {
    constexpr std::size_t levels = 200000;
    const std::string nested = std::string(levels, '[') + std::string(levels, ']');
    for (const std::string& line : {"{\"id\":" + nested + "}", "{\"x\":" + nested + ",\"id\":7}"}) {
        EXPECT_EQ(ask("number", line)["error"], "the line nests too deep");
    }
    EXPECT_EQ(rawAnswer("number", R"json({"id":[[1]],"text":"2","reading":"whole"})json"),
              R"json({"id":[[1]],"value":2})json");
}

TEST(Explain, ANumberBeyondThirtyTwoBitsIsRefused) {
    for (const std::string number :
         {"2147483648", "-2147483649", "9223372036854775808", "18446744073709551615", "1e400",
          "1e10", "3.5", "true", "\"3\""}) {
        const Json answer = ask("names", "{\"id\":1,\"mode\":0,\"locGrp\":" + number + "}");
        EXPECT_TRUE(answer.contains("error")) << number;
        EXPECT_FALSE(answer.contains("sql")) << number;
    }
}

TEST(Explain, AWholeNumberMayHaveAFractionOfZero) {
    const Json answer = ask("selection", R"json({"id":1,"today":"2012-03-14","locGrp":3.0,
        "groupLocs":[7.0,8],"notUsedDays":"1","skills":[{"key":7.0,"selected":true}]})json");
    EXPECT_EQ(answer["locationQuery"], "SELECT Loc FROM Loc WHERE LocGrp = 3");
    EXPECT_NE(answer["cardSql"].get<std::string>().find("IN (7,8)"), std::string::npos);
    EXPECT_EQ(answer["skillSql"], "SELECT Skills.NameID FROM Skills WHERE SkillID IN (7)");
}

TEST(Explain, WhatIsLeftOutOrNullHasItsUsualValue) {
    const std::string all = rawAnswer("names", R"json({"id":1,"locGrp":3,"mode":0,"lastName":"",
        "firstName":"","companyFilter":""})json");
    EXPECT_EQ(rawAnswer("names", R"json({"id":1,"locGrp":3})json"), all);
    EXPECT_EQ(rawAnswer("names", R"json({"id":1,"locGrp":3,"mode":null,"lastName":null})json"),
              all);
    EXPECT_EQ(
        rawAnswer("dialect", R"json({"id":1,"sql":"SELECT ID FROM Cards"})json"),
        rawAnswer("dialect", R"json({"id":1,"sql":"SELECT ID FROM Cards","engine":"sqlite"})json"));
    const Json card = ask("card", R"json({"id":1,"enable":false,"locGrp":3,"code":"7",
        "now":"2012-03-14","locale":null,"existing":null})json");
    EXPECT_EQ(card["fileName"], "^IMP1.txt");
    const Json companies = ask("selection", R"json({"id":1,"today":"2012-03-14","locGrp":3,
        "companies":[{"data":1},{"data":4,"selected":null}],"visitor":null})json");
    EXPECT_EQ(companies["companyFilterAsked"], true);
}

TEST(Explain, NumbersMayStandWhereATextIsReadAsANumber) {
    const Json answer = ask("selection", R"json({"id":1,"today":"2012-03-14","locGrp":3,
        "groupLocs":[7],"cardCode":123,"cardNum":45,"notUsedDays":30,"visitor":true,
        "trace":false,"udf":[{"num":2,"name":"Car","value":9}]})json");
    EXPECT_EQ(answer["cardSql"],
              "SELECT NameID FROM Cards WHERE LocGrp = 3 And DlFlag <> 2 AND Code = 123 AND "
              "CardNum LIKE '45%' AND ID IN (SELECT CardID FROM LocCards WHERE Loc IN (7) AND "
              "LastDate <= #02/13/2012 23:59:59#)");
    EXPECT_NE(answer["sql"].get<std::string>().find(" AND Visitor <> 0 AND Trace = 0"),
              std::string::npos);
    EXPECT_NE(answer["udfSql"].get<std::string>().find("LIKE '9%'"), std::string::npos);
    EXPECT_TRUE(ask("selection", R"json({"id":1,"today":"2012-03-14","locGrp":3,
        "cardCode":1.5})json")
                    .contains("error"));
}

TEST(Explain, ALineOfThousandsOfItemsIsAnswered) {
    std::string companies;
    for (int i = 0; i < 20000; ++i) {
        companies += R"json({"data":1,"selected":false},)json";
    }
    const Json answer = ask("selection", R"json({"id":1,"today":"2012-03-14","locGrp":3,
        "companies":[)json" + companies + R"json({"data":9,"selected":true}]})json");
    EXPECT_NE(answer["sql"].get<std::string>().find(" In (0,9)"), std::string::npos);
    EXPECT_EQ(answer["after"]["companies"].size(), 20001U);
}

TEST(Explain, BracketsInATextDoNotNest) {
    const std::string text = std::string(100, '[') + R"json(\"{{\\)json";
    EXPECT_EQ(
        ask("number", "{\"id\":1,\"text\":\"7" + text + "\",\"reading\":\"leading\"}")["value"], 7);
}

TEST(Explain, TheNumberOfThePersonMayStandBesideTheIdOfTheLine) {
    const Json answer = ask("card", R"json({"id":"first","nameId":17,"enable":false,"locGrp":3,
        "code":123,"now":"2012-03-14"})json");
    EXPECT_EQ(answer["id"], "first");
    EXPECT_EQ(answer["staging"].get<std::string>().substr(0, 21), "I L3 NameID ^17^^^\r\nT");
}

TEST(Explain, AnswersACardCommand) {
    const Json answer = ask("card", R"json({"id":1,"enable":true,"locGrp":3,"code":"0012",
        "now":"2012-03-14T17:05:00","locale":"en-US","ruleFile":"7\r\n18:00\r\n",
        "existing":["^IMP1.txt","^IMP2.txt","^IMP4.txt"]})json");
    EXPECT_EQ(answer["written"], true);
    EXPECT_EQ(answer["stopDate"], "2012-03-21T18:00:00");
    EXPECT_EQ(answer["fileName"], "^IMP3.txt");
    EXPECT_EQ(answer["staging"], "I L3 NameID ^1^^^\r\nT Cards\r\nF Code ^0012^^^\r\n"
                                 "F StopDate ^3/21/2012  18:00:00^^^\r\nW\r\n");
}

TEST(Explain, ACardWithoutANumberWritesNothing) {
    const Json answer = ask("card", R"json({"id":1,"enable":false,"locGrp":3,"code":"0",
        "now":"2012-03-14T17:05:00","locale":"de-DE","ruleFile":null,"existing":[]})json");
    EXPECT_EQ(answer["written"], false);
    EXPECT_EQ(answer["staging"], "");
    EXPECT_TRUE(answer["fileName"].is_null());
    EXPECT_EQ(answer["stopDate"], "2012-03-14T17:05:00");
}

TEST(Explain, TrueAndFalseMayBeWrittenAsInADatabase) {
    const auto converted = [](const std::string& flag) {
        return ask("zone", R"json({"zone":"UTC","useDst":true,"moment":"2012-03-11","toUtc":)json" +
                               flag + "}");
    };
    for (const char* flag : {"true", "false", "0", "1", "-1"}) {
        EXPECT_EQ(converted(flag)["ok"], true) << flag;
    }
    for (const char* flag : {"2", "0.5", "\"true\"", "[]", "null"}) {
        EXPECT_EQ(converted(flag)["error"], "'toUtc' is not true or false") << flag;
    }
}

TEST(Explain, AnswersTheDialectOrWhereItWentWrong) {
    const Json answer = ask("dialect", R"json({"id":1,"engine":"sqlite",
        "sql":"SELECT FileName FROM Images WHERE NameID = 17 AND ImgType = 2"})json");
    EXPECT_EQ(answer["values"], Json::parse("[17,2]"));
    EXPECT_TRUE(answer["text"].is_string());
    const Json broken =
        ask("dialect", R"json({"id":1,"engine":"sqlite","sql":"SELECT FROM Images"})json");
    EXPECT_EQ(broken["position"], 8);
    EXPECT_TRUE(broken["error"].is_string());
}

TEST(Explain, EveryNumberOfAStatementIsANumberOfTheAnswer) {
    const auto valuesOf = [](const std::string& number) {
        const std::string line =
            rawAnswer("dialect", R"json({"id":1,"sql":"SELECT ID FROM Cards WHERE Code = )json" +
                                     number + "\"}");
        return line.substr(line.find("\"values\""));
    };
    EXPECT_EQ(valuesOf(".5"), R"json("values":[0.5]})json");
    EXPECT_EQ(valuesOf("5."), R"json("values":[5]})json");
    EXPECT_EQ(valuesOf("007.50"), R"json("values":[7.5]})json");
    EXPECT_EQ(valuesOf(".5E3"), R"json("values":[0.5E3]})json");
    EXPECT_EQ(valuesOf("00012345678901234567890123"),
              R"json("values":[12345678901234567890123]})json");
}

TEST(Explain, AnswersTheDialectOfEitherEngineByItsName) {
    const auto textFor = [](const std::string& engine) {
        return ask("dialect", R"json({"id":1,"engine":")json" + engine +
                                  R"json(","sql":"SELECT ID FROM [Names] WHERE LName = 'a'"})json");
    };
    const Json embedded = textFor("sqlite");
    const Json served = textFor("postgresql");
    EXPECT_EQ(served["values"], embedded["values"]);
    EXPECT_NE(served["text"], embedded["text"]);
    EXPECT_EQ(textFor("oracle")["error"],
              "There is no such engine; there are sqlite and postgresql.");
}

TEST(Explain, AnswersTheNameQuery) {
    EXPECT_EQ(ask("names", R"json({"id":1,"locGrp":3,"mode":0,"lastName":"O'Br","firstName":"",
        "companyFilter":" AND [Names].Company IN (0, 4)"})json")["sql"],
              "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, Trace, "
              "Company.Name AS COMPNAME FROM [Names] LEFT JOIN Company ON [Names].LocGrp = "
              "Company.LocGrp AND [Names].Company = Company.Company WHERE [Names].LocGrp = 3 AND "
              "LName LIKE 'O''Br%' AND [Names].Company IN (0, 4) ORDER BY LName, FName");
}

TEST(Explain, AnswersTheSelectionAndWhatItsBuildersLeave) {
    const Json answer = ask("selection", R"json({"id":1,"today":"2012-03-14","locGrp":3,
        "groupLocs":[7,8],"companyFilter":"","notUsedDays":"30","visitor":"true",
        "companies":[{"data":1,"selected":true},{"data":4,"selected":true}],
        "udf":[{"num":2,"name":"Car","value":"Blue"}],
        "skills":[{"key":"3","selected":true},{"key":7,"selected":true}]})json");
    EXPECT_EQ(answer["udfSql"],
              "SELECT UDF.NameID FROM UDF WHERE Udf.LocGrp = 3 And Udf.NameID In (SELECT NameID "
              "FROM UDF WHERE UdfNum = 2 AND UdfText LIKE 'Blue%'))");
    EXPECT_EQ(answer["skillSql"], "SELECT Skills.NameID FROM Skills WHERE SkillID IN (3)");
    EXPECT_EQ(answer["cardSql"],
              "SELECT NameID FROM Cards WHERE LocGrp = 3 And DlFlag <> 2 AND ID IN (SELECT CardID "
              "FROM LocCards WHERE Loc IN (7,8) AND LastDate <= #02/13/2012 23:59:59#)");
    EXPECT_EQ(answer["locationQuery"], "SELECT Loc FROM Loc WHERE LocGrp = 3");
    EXPECT_EQ(answer["companyFilterAsked"], false);
    EXPECT_EQ(answer["after"]["companies"],
              Json::parse(R"json([{"data":1,"selected":true},{"data":4,"selected":false}])json"));
    EXPECT_EQ(answer["after"]["skills"],
              Json::parse(R"json([{"key":"3","selected":false},{"key":7,"selected":true}])json"));
    EXPECT_EQ(answer["after"]["visitor"], "either");
    EXPECT_EQ(answer["after"]["udf"][0]["value"], "");
}

} // namespace
} // namespace kintar::explain
