#include "overrides/objOvrSchedule.h"

#include "overrides/FakeOverrides.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kintar {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using namespace kintar::testing;

using Schedule = std::unique_ptr<objOvrSchedule>;

Schedule newSchedule(FakeOverrides& overrides, std::int16_t pointType = 0) {
    auto schedule = std::make_unique<objOvrSchedule>(overrides.services());
    schedule->PointID(11);
    schedule->PointType(pointType);
    schedule->Create(0);
    return schedule;
}

Schedule existingSchedule(FakeOverrides& overrides, const Row& row = existingRow()) {
    overrides.store(row);
    auto schedule = std::make_unique<objOvrSchedule>(overrides.services());
    schedule->PointID(11);
    schedule->Create(7);
    return schedule;
}

TEST(objOvrSchedule, StartsWithEveryFieldZeroOrEmpty) {
    FakeOverrides overrides;
    const objOvrSchedule schedule(overrides.services());
    EXPECT_EQ(schedule.PointID(), 0);
    EXPECT_EQ(schedule.StartDate(), DateTime());
    EXPECT_EQ(schedule.Opr(), "");
    EXPECT_FALSE(schedule.IsAdd());
    EXPECT_EQ(schedule.ErrField(), "");
}

TEST(objOvrSchedule, CreateWithAKeyThatDoesNotExistGivesANewScheduleOfNow) {
    FakeOverrides overrides;
    objOvrSchedule schedule(overrides.services());
    schedule.PointID(11);
    schedule.Opr("before");
    schedule.OprID(4);
    schedule.Status(4);
    EXPECT_FALSE(schedule.Create(99));
    EXPECT_TRUE(schedule.IsAdd());
    EXPECT_EQ(schedule.StartDate().iso(), "2012-07-04T09:00:00");
    EXPECT_EQ(schedule.StopDate(), schedule.StartDate());
    EXPECT_EQ(schedule.StopCmd(), 3);
    EXPECT_EQ(schedule.Opr(), "");
    EXPECT_EQ(schedule.OprID(), 0);
    EXPECT_EQ(schedule.Status(), 0);
    EXPECT_EQ(schedule.PointID(), 11);
    schedule.Save();
    EXPECT_THAT(overrides.database.executed.back(), HasSubstr("INSERT INTO"));
}

TEST(objOvrSchedule, NewSchedulesStartOpenForTypes0And2AndArmedForTheOthers) {
    FakeOverrides overrides;
    EXPECT_EQ(newSchedule(overrides, 0)->StartCmd(), 1);
    EXPECT_EQ(newSchedule(overrides, 1)->StartCmd(), 4);
    EXPECT_EQ(newSchedule(overrides, 2)->StartCmd(), 1);
    EXPECT_EQ(newSchedule(overrides, 3)->StartCmd(), 4);
    EXPECT_EQ(newSchedule(overrides, 9)->StartCmd(), 4);
}

TEST(objOvrSchedule, ANewSchedulesNowIsConvertedAsIfItWereUtc) {
    FakeOverrides overrides;
    overrides.locate("Central Standard Time");
    EXPECT_EQ(newSchedule(overrides)->StartDate().iso(), "2012-07-04T04:00:00");
}

TEST(objOvrSchedule, CreateAsksInOrderAndLetsMessagesRunTwice) {
    FakeOverrides overrides;
    newSchedule(overrides);
    EXPECT_THAT(overrides.database.statements,
                ElementsAre("SELECT * FROM OvrSchedule WHERE ID = 0", "pending messages",
                            "pending messages", pointQuery(11)));
    overrides.database.statements.clear();
    existingSchedule(overrides);
    EXPECT_THAT(overrides.database.statements,
                ElementsAre("SELECT * FROM OvrSchedule WHERE ID = 7", "pending messages",
                            "pending messages", pointQuery(11)));
}

TEST(objOvrSchedule, LoadsARowIntoTheLocationsTime) {
    FakeOverrides overrides;
    overrides.locate("Central Standard Time");
    const Schedule held = existingSchedule(overrides);
    const objOvrSchedule& schedule = *held;
    EXPECT_FALSE(schedule.IsAdd());
    EXPECT_EQ(schedule.PointID(), 11);
    EXPECT_EQ(schedule.PointType(), 0);
    EXPECT_EQ(schedule.StartCmd(), 1);
    EXPECT_EQ(schedule.StopCmd(), 2);
    EXPECT_EQ(schedule.StartDate().iso(), "2012-07-04T12:07:00");
    EXPECT_EQ(schedule.StopDate().iso(), "2012-07-04T15:00:00");
    EXPECT_EQ(schedule.Opr(), "Ann  7/1/2012");
    EXPECT_EQ(schedule.OprID(), 3);
    EXPECT_EQ(schedule.Status(), 5);
}

TEST(objOvrSchedule, ALocationWithoutDaylightTimeConvertsWithTheStandardOffsetInSummer) {
    FakeOverrides overrides;
    overrides.locate("Central Standard Time", false);
    EXPECT_EQ(existingSchedule(overrides)->StartDate().iso(), "2012-07-04T11:07:00");
}

TEST(objOvrSchedule, ABadColumnKeepsItsFieldAndTheOthersAreRead) {
    for (const char* column : {"PointID", "PointType", "StartCmd", "StartDate", "StopCmd",
                               "StopDate", "Opr", "OprID", "Status"}) {
        FakeOverrides overrides;
        Row row = existingRow();
        row[column] = "null";
        overrides.store(row);
        objOvrSchedule schedule(overrides.services());
        schedule.PointID(99);
        schedule.PointType(1);
        schedule.StartCmd(99);
        schedule.StartDate(moment("2001-01-01"));
        schedule.StopCmd(99);
        schedule.StopDate(moment("2001-01-01"));
        schedule.Opr("kept");
        schedule.OprID(99);
        schedule.Status(99);
        schedule.Create(7);
        const std::string bad = column;
        EXPECT_EQ(schedule.PointID(), bad == "PointID" ? 99 : 11) << bad;
        EXPECT_EQ(schedule.PointType(), bad == "PointType" ? 1 : 0) << bad;
        EXPECT_EQ(schedule.StartCmd(), bad == "StartCmd" ? 99 : 1) << bad;
        EXPECT_EQ(schedule.StartDate().iso(),
                  bad == "StartDate" ? "2001-01-01T00:00:00" : "2012-07-04T17:07:00");
        EXPECT_EQ(schedule.StopCmd(), bad == "StopCmd" ? 99 : 2) << bad;
        EXPECT_EQ(schedule.StopDate().iso(),
                  bad == "StopDate" ? "2001-01-01T00:00:00" : "2012-07-04T20:00:00");
        EXPECT_EQ(schedule.Opr(), bad == "Opr" ? "kept" : "Ann  7/1/2012") << bad;
        EXPECT_EQ(schedule.OprID(), bad == "OprID" ? 99 : 3) << bad;
        EXPECT_EQ(schedule.Status(), bad == "Status" ? 99 : 5) << bad;
        EXPECT_FALSE(schedule.IsAdd());
    }
}

TEST(objOvrSchedule, ATypeBeyond16BitsAndADateThatIsNoneAreBadColumns) {
    FakeOverrides overrides;
    Row row = existingRow();
    row["PointType"] = "70000";
    row["StartDate"] = "tomorrow";
    const Schedule held = existingSchedule(overrides, row);
    const objOvrSchedule& schedule = *held;
    EXPECT_EQ(schedule.PointType(), 0);
    EXPECT_EQ(schedule.StartDate(), DateTime());
    EXPECT_EQ(schedule.StopDate().iso(), "2012-07-04T20:00:00");
}

TEST(objOvrSchedule, InsertsInItsOwnOrderOfColumns) {
    FakeOverrides overrides;
    const Schedule held = newSchedule(overrides);
    objOvrSchedule& schedule = *held;
    schedule.Opr("Ann's  7/4/2012 9:00:00 AM");
    schedule.OprID(-3);
    schedule.Status(1);
    schedule.StopDate(moment("2012-07-04T10:15:00"));
    EXPECT_TRUE(schedule.Save());
    EXPECT_THAT(overrides.database.executed,
                ElementsAre("INSERT INTO OvrSchedule (PointID, PointType, StartCmd, StopCmd, Opr, "
                            "OprID, Status, StartDate, StopDate) Values (11, 0, 1, 3, "
                            "'Ann''s  7/4/2012 9:00:00 AM', -3, 1, #2012-07-04 09:00:00#, "
                            "#2012-07-04 10:15:00#)"));
    EXPECT_FALSE(schedule.IsAdd());
}

TEST(objOvrSchedule, UpdatesEverythingButThePointAndItsType) {
    FakeOverrides overrides;
    const Schedule held = existingSchedule(overrides);
    objOvrSchedule& schedule = *held;
    schedule.PointID(12);
    schedule.PointType(1);
    EXPECT_TRUE(schedule.Save());
    EXPECT_THAT(overrides.database.executed,
                ElementsAre("UPDATE OvrSchedule SET StartCmd = 1, StartDate = #2012-07-04 "
                            "17:07:00#, StopCmd = 2, StopDate = #2012-07-04 20:00:00#, Opr = "
                            "'Ann  7/1/2012', OprID = 3, Status = 5 WHERE ID = 7"));
}

TEST(objOvrSchedule, ASecondSaveOfANewScheduleUpdatesNoRow) {
    FakeOverrides overrides;
    const Schedule held = newSchedule(overrides);
    objOvrSchedule& schedule = *held;
    schedule.Save();
    schedule.Save();
    EXPECT_THAT(overrides.database.executed.back(), HasSubstr("UPDATE"));
    EXPECT_TRUE(overrides.database.executed.back().ends_with(" WHERE ID = 0"));
}

TEST(objOvrSchedule, DatesAreUtcAfterSave) {
    FakeOverrides overrides;
    overrides.locate("Central Standard Time");
    const Schedule held = newSchedule(overrides);
    objOvrSchedule& schedule = *held;
    schedule.StartDate(moment("2012-12-24T18:00:00"));
    schedule.StopDate(moment("2012-07-24T18:00:00"));
    EXPECT_TRUE(schedule.Save());
    EXPECT_EQ(schedule.StartDate().iso(), "2012-12-25T00:00:00");
    EXPECT_EQ(schedule.StopDate().iso(), "2012-07-24T23:00:00");
    EXPECT_THAT(overrides.database.executed.back(), HasSubstr("#2012-12-25 00:00:00#"));
}

TEST(objOvrSchedule, AFailedSaveIsFalseKeepsIsAddAndLeavesTheDatesInUtc) {
    FakeOverrides overrides;
    overrides.locate("Central Standard Time");
    const Schedule held = newSchedule(overrides);
    objOvrSchedule& schedule = *held;
    schedule.StartDate(moment("2012-12-24T18:00:00"));
    overrides.database.failsToExecute = true;
    EXPECT_FALSE(schedule.Save());
    EXPECT_TRUE(schedule.IsAdd());
    EXPECT_EQ(schedule.StartDate().iso(), "2012-12-25T00:00:00");
    EXPECT_THAT(overrides.database.reports,
                ElementsAre("objOvrSchedule/Save: the database is closed"));
}

TEST(objOvrSchedule, DeleteAndCreateAreFalseAlsoWhereTheySucceed) {
    FakeOverrides overrides;
    overrides.store(existingRow());
    objOvrSchedule schedule(overrides.services());
    EXPECT_FALSE(schedule.Create(7));
    EXPECT_FALSE(schedule.Delete());
    EXPECT_THAT(overrides.database.executed, ElementsAre("Delete FROM OvrSchedule WHERE ID = 7"));
}

TEST(objOvrSchedule, DeleteIgnoresErrors) {
    FakeOverrides overrides;
    const Schedule held = existingSchedule(overrides);
    objOvrSchedule& schedule = *held;
    overrides.database.failsToExecute = true;
    EXPECT_FALSE(schedule.Delete());
    EXPECT_THAT(overrides.database.reports, IsEmpty());
}

TEST(objOvrSchedule, CreateStopsWhereItsQueryFails) {
    FakeOverrides overrides;
    overrides.database.failsAt = scheduleQuery(7);
    objOvrSchedule schedule(overrides.services());
    EXPECT_FALSE(schedule.Create(7));
    EXPECT_FALSE(schedule.IsAdd());
    EXPECT_EQ(schedule.StartDate(), DateTime());
}

TEST(objOvrSchedule, TakesType3FromTheGroupAndType1FromThePoint) {
    FakeOverrides overrides;
    newSchedule(overrides, 3);
    EXPECT_EQ(overrides.database.statements.back(), groupQuery(11));
    newSchedule(overrides, 2);
    EXPECT_EQ(overrides.database.statements.back(), groupQuery(11));
    newSchedule(overrides, 1);
    EXPECT_EQ(overrides.database.statements.back(), pointQuery(11));
    newSchedule(overrides, -1);
    EXPECT_EQ(overrides.database.statements.back(), pointQuery(11));
}

TEST(objOvrSchedule, WithoutALocationDatesStayAndBothOffsetsAreTheWorkstations) {
    FakeOverrides overrides;
    const Schedule held = existingSchedule(overrides);
    const objOvrSchedule& schedule = *held;
    EXPECT_EQ(schedule.StartDate().iso(), "2012-07-04T17:07:00");
    EXPECT_EQ(schedule.LocTimeDiff(), -300);
    EXPECT_EQ(schedule.SysTimeDiff(), -300);
    EXPECT_EQ(schedule.zone().kind, OverrideZone::Kind::NoLocation);
}

TEST(objOvrSchedule, WestOfGreenwichInWinterIsMinus300AndALocationInSummerToo) {
    FakeOverrides overrides;
    overrides.clock.set("2012-01-04T09:00:00", -300);
    EXPECT_EQ(newSchedule(overrides)->SysTimeDiff(), -300);
    overrides.clock.set("2012-07-04T09:00:00", 60);
    overrides.locate("Central Standard Time");
    const Schedule held = newSchedule(overrides);
    const objOvrSchedule& schedule = *held;
    EXPECT_EQ(schedule.LocTimeDiff(), -300);
    EXPECT_EQ(schedule.SysTimeDiff(), 60);
    EXPECT_EQ(schedule.zone().kind, OverrideZone::Kind::Zone);
    EXPECT_EQ(schedule.zone().name, "Central Standard Time");
}

TEST(objOvrSchedule, TheLocationsOffsetIsThatOfTheWorkstationsNowReadAsUtc) {
    FakeOverrides overrides;
    overrides.locate("Central Standard Time");
    // In Chicago it is 03:30 in daylight time, which began half an hour ago; read as UTC, 03:30
    // lies before the change at 08:00 UTC.
    overrides.clock.set("2012-03-11T03:30:00", -300);
    const Schedule held = newSchedule(overrides);
    const objOvrSchedule& schedule = *held;
    EXPECT_EQ(schedule.SysTimeDiff(), -300);
    EXPECT_EQ(schedule.LocTimeDiff(), -360);
}

TEST(objOvrSchedule, AnEmptyZoneNameKeepsTheWorkstationsOffsetAndConvertsNothing) {
    FakeOverrides overrides;
    overrides.locate("");
    const Schedule held = existingSchedule(overrides);
    const objOvrSchedule& schedule = *held;
    EXPECT_EQ(schedule.LocTimeDiff(), -300);
    EXPECT_EQ(schedule.StartDate().iso(), "2012-07-04T17:07:00");
    EXPECT_EQ(schedule.zone().kind, OverrideZone::Kind::Utc);
    EXPECT_THAT(overrides.zones.events, IsEmpty());
}

TEST(objOvrSchedule, AnUnknownZoneIsUtcAndItsOffset0) {
    FakeOverrides overrides;
    overrides.locate("Atlantis Standard Time");
    const Schedule held = existingSchedule(overrides);
    const objOvrSchedule& schedule = *held;
    EXPECT_EQ(schedule.LocTimeDiff(), 0);
    EXPECT_EQ(schedule.SysTimeDiff(), -300);
    EXPECT_EQ(schedule.StartDate().iso(), "2012-07-04T17:07:00");
    EXPECT_EQ(schedule.zone().kind, OverrideZone::Kind::Utc);
    EXPECT_EQ(schedule.zone().name, "Atlantis Standard Time");
}

TEST(objOvrSchedule, ANullZoneOrFlagStopsTheConversionAndFailsASave) {
    for (const bool zoneIsNull : {true, false}) {
        FakeOverrides overrides;
        overrides.database.rows[pointQuery(11)] = [=] {
            Recordset row({{"TimeZone", ColumnType::Text}, {"DST", ColumnType::YesNo}});
            zoneIsNull ? row.addNull() : row.addText("Central Standard Time");
            zoneIsNull ? row.addInteger(-1) : row.addNull();
            return row;
        };
        const Schedule held = existingSchedule(overrides);
        objOvrSchedule& schedule = *held;
        EXPECT_EQ(schedule.StartDate().iso(), "2012-07-04T17:07:00");
        EXPECT_EQ(schedule.LocTimeDiff(), -300) << "what was done before stays";
        EXPECT_FALSE(schedule.Save());
        EXPECT_THAT(overrides.database.executed, IsEmpty());
    }
}

TEST(objOvrSchedule, AFailedLocationQueryLeavesTheLocationsOffset0) {
    FakeOverrides overrides;
    const Schedule held = newSchedule(overrides);
    objOvrSchedule& schedule = *held;
    overrides.database.failsAt = pointQuery(11);
    EXPECT_FALSE(schedule.Save());
    EXPECT_EQ(schedule.LocTimeDiff(), 0);
    EXPECT_EQ(schedule.SysTimeDiff(), -300) << "from before";
}

TEST(objOvrSchedule, ASaveThatFailsBeforeItsStatementIsAnnounced) {
    FakeOverrides overrides;
    const Schedule schedule = newSchedule(overrides);
    overrides.database.failsAt = pointQuery(11);
    EXPECT_FALSE(schedule->Save());
    EXPECT_THAT(overrides.database.announced, ElementsAre("the database is gone"));
    EXPECT_THAT(overrides.database.executed, IsEmpty());
}

TEST(objOvrSchedule, ASaveWhoseStatementFailsIsLeftToTheCompanionToAnnounce) {
    FakeOverrides overrides;
    const Schedule schedule = newSchedule(overrides);
    overrides.database.failsToExecute = true;
    EXPECT_FALSE(schedule->Save());
    EXPECT_THAT(overrides.database.announced, IsEmpty());
}

TEST(objOvrSchedule, AZoneIsLookedUpAgainAtEverySave) {
    FakeOverrides overrides;
    overrides.locate("Central Standard Time");
    const Schedule held = newSchedule(overrides);
    objOvrSchedule& schedule = *held;
    overrides.locate("");
    schedule.StartDate(moment("2012-12-24T18:00:00"));
    schedule.Save();
    EXPECT_EQ(schedule.StartDate().iso(), "2012-12-24T18:00:00");
}

TEST(objOvrSchedule, ADateThatCannotBeConvertedStaysAndTheOtherIsConverted) {
    FakeOverrides overrides;
    overrides.locate("Central Standard Time");
    const Schedule held = newSchedule(overrides);
    objOvrSchedule& schedule = *held;
    schedule.StartDate(moment("1600-01-01T00:00:00"));
    schedule.StopDate(moment("2012-12-24T18:00:00"));
    EXPECT_TRUE(schedule.Save());
    EXPECT_EQ(schedule.StartDate().iso(), "1600-01-01T00:00:00");
    EXPECT_EQ(schedule.StopDate().iso(), "2012-12-25T00:00:00");
}

TEST(objOvrSchedule, IsDescribedInSlotOrder) {
    FakeOverrides overrides;
    const PublicClass described = objOvrSchedule::describe(overrides.services());
    std::vector<std::string> names;
    for (const Member& member : described.members) {
        names.push_back(member.name);
    }
    EXPECT_THAT(names, ElementsAre("PointID", "PointType", "StartCmd", "StartDate", "StopCmd",
                                   "StopDate", "Opr", "OprID", "Status", "IsAdd", "ErrField",
                                   "LocTimeDiff", "SysTimeDiff", "Create", "Save", "Delete"));
    EXPECT_EQ(described.members[10].kind, MemberKind::ReadOnly);
    EXPECT_EQ(described.members[13].parameters.at(0).type, ValueType::Int32);
    EXPECT_EQ(described.members[13].type, ValueType::Boolean);
}

} // namespace
} // namespace kintar
