#include "tools/explain/Rules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace kintar::explain {
namespace {

Json ask(std::string_view rule, const std::string& line) {
    const auto found = std::ranges::find(rules(), rule, &Rule::name);
    EXPECT_NE(found, rules().end()) << rule;
    return Json::parse(answerLine(*found, line));
}

/// The rules of a zone six hours behind UTC with daylight time.
const std::string centralRecord =
    R"json("record":{"bias":360,"standardBias":0,"daylightBias":-60,
    "standardDate":[0,11,0,1,2,0,0,0],"daylightDate":[0,3,0,2,2,0,0,0]})json";

const std::string newRecord =
    R"json("ID":0,"PointID":11,"PointType":0,"StartCmd":1,"StopCmd":2,
    "StartDate":"2012-07-04T12:00:00","StopDate":"2012-07-04T13:00:00","Opr":"O'Brien",
    "OprID":3,"Status":0,"IsAdd":true)json";

TEST(ExplainZone, ConvertsByTheSystemsRecord) {
    const Json answer = ask("zone", R"json({"id":1,"zone":"India Standard Time","useDst":true,
        "toUtc":true,"moment":"2026-01-02T01:30:00"})json");
    EXPECT_EQ(answer.dump(), R"json({"id":1,"moment":"2026-01-01T20:00:00","ok":true})json");
}

TEST(ExplainZone, ConvertsByAStatedRecord) {
    EXPECT_EQ(ask("zone", R"json({"zone":"x","useDst":true,"toUtc":false,
        "moment":"2012-03-11T08:00:00",)json" +
                              centralRecord + "}")["moment"],
              "2012-03-11T03:00:00");
    EXPECT_EQ(ask("zone", R"json({"useDst":false,"toUtc":false,
        "moment":"2012-07-11T08:00:00",)json" +
                              centralRecord + "}")["moment"],
              "2012-07-11T02:00:00");
}

TEST(ExplainZone, AFailedConversionLeavesTheMoment) {
    const Json answer = ask("zone", R"json({"zone":"x","useDst":true,"toUtc":false,
        "moment":"2012-03-11","record":{"bias":0,"standardBias":0,"daylightBias":-60,
        "standardDate":[0,11,0,9,2,0,0,0],"daylightDate":[0,3,0,2,2,0,0,0]}})json");
    EXPECT_EQ(answer["moment"], "2012-03-11T00:00:00");
    EXPECT_EQ(answer["ok"], false);
}

TEST(ExplainZone, AMomentOutsideTheYearsOfTheConversionStays) {
    for (const std::string moment : {"9999-12-31T23:00:00", "1600-12-31T12:00:00"}) {
        const Json answer = ask("zone", R"json({"useDst":true,"toUtc":true,"moment":")json" +
                                            moment + "\"," + centralRecord + "}");
        EXPECT_EQ(answer["moment"], moment);
        EXPECT_EQ(answer["ok"], false);
    }
}

TEST(ExplainZone, AnUnknownZoneIsUtc) {
    const Json answer = ask("zone", R"json({"zone":"Atlantis","useDst":true,"toUtc":true,
        "moment":"2012-03-11T08:00:00"})json");
    EXPECT_EQ(answer["moment"], "2012-03-11T08:00:00");
    EXPECT_EQ(answer["ok"], true);
}

TEST(ExplainZone, ABrokenRecordIsAnError) {
    for (
        const char* record :
        {R"json([])json", R"json({"bias":0})json",
         R"json({"bias":0,"standardBias":0,"daylightBias":0,"standardDate":[1],"daylightDate":[]})json",
         R"json({"bias":0,"standardBias":0,"daylightBias":0,"standardDate":[0,0,0,0,0,0,0,-1],
                  "daylightDate":[0,0,0,0,0,0,0,0]})json"}) {
        const Json answer =
            ask("zone", std::string(R"json({"id":4,"zone":"x","useDst":true,"toUtc":true,
            "moment":"2012-03-11","record":)json") +
                            record + "}");
        EXPECT_TRUE(answer.contains("error")) << record;
        EXPECT_EQ(answer["id"], 4);
    }
}

TEST(ExplainOverrideSave, InsertsInUtc) {
    const Json answer =
        ask("override-save", "{\"id\":9," + newRecord + R"json(,"zone":"x","useDst":true,)json" +
                                 centralRecord + "}");
    EXPECT_EQ(answer["sql"],
              "INSERT INTO OvrSchedule (PointID, PointType, StartCmd, StopCmd, Opr, OprID, Status, "
              "StartDate, StopDate) Values (11, 0, 1, 2, 'O''Brien', 3, 0, #07/04/2012 17:00:00#, "
              "#07/04/2012 18:00:00#)");
    EXPECT_EQ(answer["result"], true);
    EXPECT_EQ(answer["after"]["StartDate"], "2012-07-04T17:00:00");
    EXPECT_EQ(answer["after"]["IsAdd"], false);
    EXPECT_EQ(answer["after"]["ID"], 0) << "never the line's own id";
}

TEST(ExplainOverrideSave, UpdatesTheRowOfItsID) {
    const Json answer = ask("override-save", R"json({"id":9,"ID":42,"PointID":11,"StartCmd":1,
        "StopCmd":3,"StartDate":"2012-07-04T12:00:00","StopDate":"2012-07-04T13:00:00",
        "IsAdd":false})json");
    EXPECT_EQ(
        answer["sql"],
        "UPDATE OvrSchedule SET StartCmd = 1, StartDate = #07/04/2012 12:00:00#, StopCmd = 3, "
        "StopDate = #07/04/2012 13:00:00#, Opr = '', OprID = 0, Status = 0 WHERE ID = 42")
        << "without a zone the dates stay";
}

TEST(ExplainOverrideSave, ANullZoneRunsNoStatement) {
    const Json answer =
        ask("override-save", "{" + newRecord + R"json(,"zone":null,"useDst":true})json");
    EXPECT_TRUE(answer["sql"].is_null());
    EXPECT_EQ(answer["result"], false);
    EXPECT_EQ(answer["after"]["IsAdd"], true);
}

TEST(ExplainOverrideSave, AZoneOrFlagOfAnotherTypeIsAnError) {
    EXPECT_EQ(
        ask("override-save", "{" + newRecord + R"json(,"zone":5,"useDst":true})json")["error"],
        "'zone' is not a text");
    EXPECT_EQ(
        ask("override-save", "{" + newRecord + R"json(,"zone":"UTC","useDst":"yes"})json")["error"],
        "'useDst' is not true or false");
}

TEST(ExplainOverrideSave, AZoneNeedsItsFlag) {
    for (const std::string& zone : {std::string(R"json("zone":"UTC")json"), centralRecord}) {
        EXPECT_EQ(ask("override-save", "{" + newRecord + "," + zone + "}")["error"],
                  "'useDst' is missing");
    }
    EXPECT_EQ(ask("override-save", "{" + newRecord + R"json(,"zone":""})json")["result"], true);
    EXPECT_EQ(ask("override-accept", "{" + newRecord + R"json(,"zone":"UTC","locationRow":false,
        "startSlider":48,"stopSlider":52})json")["outcome"],
              "ok");
    EXPECT_EQ(
        ask("override-save", "{" + newRecord + R"json(,"zone":"UTC","useDst":null})json")["result"],
        false)
        << "a flag that is Null in the database";
}

TEST(ExplainOverrideSave, AStatedRecordNeedsNoName) {
    EXPECT_EQ(ask("override-save", "{" + newRecord + R"json(,"zone":null,"useDst":true,)json" +
                                       centralRecord + "}")["after"]["StartDate"],
              "2012-07-04T17:00:00");
}

TEST(ExplainOverrideSave, ADateBehindTheLastYearRunsNoStatement) {
    const Json answer = ask("override-save", R"json({"ID":1,"StartDate":"2012-07-04T12:00:00",
        "StopDate":"9999-12-31T23:00:00","useDst":true,)json" +
                                                 centralRecord + "}");
    EXPECT_TRUE(answer["sql"].is_null());
    EXPECT_EQ(answer["result"], false);
    EXPECT_EQ(answer["after"]["StartDate"], "2012-07-04T17:00:00");
    EXPECT_EQ(answer["after"]["StopDate"], "9999-12-31T23:00:00");
}

TEST(ExplainOverrideCorrection, MovesANewScheduleOutOfThePast) {
    const Json answer = ask("override-correction", R"json({"id":1,"isAdd":true,
        "now":"2012-03-14T23:50:00","locTimeDiff":-300,"sysTimeDiff":-300,"date":"2012-03-14",
        "slider":95})json");
    EXPECT_EQ(answer.dump(), R"json({"id":1,"date":"2012-03-15","slider":0,)json"
                             R"json("moment":"2012-03-15T00:00:00"})json");
}

TEST(ExplainOverrideCorrection, LeavesAnExistingSchedule) {
    const Json answer = ask("override-correction", R"json({"isAdd":false,
        "now":"2012-03-14T23:50:00","locTimeDiff":0,"sysTimeDiff":0,"date":"2001-03-14",
        "slider":3})json");
    EXPECT_EQ(answer["moment"], "2001-03-14T00:45:00");
}

TEST(ExplainOverrideCorrection, NeedsNoClockForAnExistingScheduleAndNoOffsetsAtAll) {
    EXPECT_EQ(ask("override-correction",
                  R"json({"isAdd":false,"date":"2001-03-14","slider":3})json")["moment"],
              "2001-03-14T00:45:00");
    EXPECT_EQ(ask("override-correction", R"json({"isAdd":true,"now":"2012-03-14T09:59:58",
        "locTimeDiff":null,"date":"2012-03-14","slider":40})json")["slider"],
              40);
}

TEST(ExplainOverrideCorrection, ASliderOutsideADayIsAnError) {
    EXPECT_TRUE(ask("override-correction", R"json({"isAdd":true,"now":"2012-03-14T23:50:00",
        "locTimeDiff":0,"sysTimeDiff":0,"date":"2012-03-14","slider":96})json")
                    .contains("error"));
}

TEST(ExplainOverrideCorrection, AnOffsetThatNoRecordHoldsIsAnError) {
    const Json answer = ask("override-correction", R"json({"isAdd":true,"now":"2012-03-14T23:50:00",
        "locTimeDiff":2147483647,"sysTimeDiff":-2147483648,"date":"2012-03-14","slider":3})json");
    EXPECT_EQ(answer["error"], "'locTimeDiff' is not a 16-bit integer");
}

TEST(ExplainOverrideAccept, SavesTheScheduleAndItsAdditionalDays) {
    const Json answer = ask("override-accept", "{" + newRecord + R"json(,"startSlider":48,
        "stopSlider":52,"additionalDays":[{"start":"2012-07-06","stop":"2012-07-05"},
        {"start":"2012-12-07","stop":"2012-12-07"}],"zone":"Central Standard Time","useDst":true,
        "locationRow":true,)json" + centralRecord + "}");
    EXPECT_EQ(answer["outcome"], "ok");
    ASSERT_EQ(answer["statements"].size(), 2U);
    EXPECT_NE(answer["statements"][0].get<std::string>().find(
                  "3, 1, #07/04/2012 17:00:00#, #07/04/2012 18:00:00#)"),
              std::string::npos);
    EXPECT_NE(answer["statements"][1].get<std::string>().find("#12/07/2012 18:00:00#"),
              std::string::npos);
}

TEST(ExplainOverrideAccept, TellsWhatIsWrong) {
    EXPECT_EQ(ask("override-accept",
                  "{" + newRecord + R"json(,"startSlider":48,"stopSlider":48})json")["outcome"],
              "dates");
    const Json answer = ask("override-accept", R"json({"PointID":11,"StartCmd":0,"StopCmd":2,
        "StartDate":"2012-07-04","StopDate":"2012-07-04","IsAdd":true,"startSlider":48,
        "stopSlider":52})json");
    EXPECT_EQ(answer["outcome"], "command");
    EXPECT_TRUE(answer["statements"].empty());
}

TEST(ExplainOverrideAccept, ACodeWithoutAButtonIsNoCommand) {
    const auto outcome = [](const std::string& start, const std::string& stop) {
        return ask("override-accept", R"json({"StartDate":"2012-07-04","StopDate":"2012-07-04",
            "startSlider":48,"stopSlider":52,"StartCmd":)json" +
                                          start + ",\"StopCmd\":" + stop + "}")["outcome"];
    };
    for (const char* code : {"0", "6", "-1", "2147483647"}) {
        EXPECT_EQ(outcome(code, "3"), "command") << code;
        EXPECT_EQ(outcome("1", code), "command") << code;
    }
    for (const char* code : {"1", "2", "3", "4", "5"}) {
        EXPECT_EQ(outcome(code, code), "ok") << code;
    }
}

TEST(ExplainOverrideAccept, WithoutALocationTheDatesStay) {
    const Json answer = ask("override-accept", "{" + newRecord + R"json(,"startSlider":48,
        "stopSlider":52,"zone":"Central Standard Time","useDst":true,"locationRow":false})json");
    EXPECT_NE(answer["statements"][0].get<std::string>().find("#07/04/2012 12:00:00#"),
              std::string::npos);
}

} // namespace
} // namespace kintar::explain
