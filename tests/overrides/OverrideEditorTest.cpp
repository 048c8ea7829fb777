#include "overrides/OverrideEditor.h"

#include "overrides/FakeOverrides.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kintar {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using namespace kintar::testing;

const std::string cursorQuery = "Select ID From OvrSchedule Where PointID = 11";

/// An editor on point 11, a door in the workstation's own zone, at 09:00.
struct Editor {
    explicit Editor(std::int16_t pointType = 0) {
        overrides.locate("Central Standard Time");
        editor.point = {11,   pointType, "Dock door", "Lisbon", "Ann", 3,
                        true, true,      true,        true,     true};
    }

    /// Stored schedules of the point, with keys from 1, start commands Open and stop Secure.
    void store(int count) {
        stored.clear();
        for (int id = 1; id <= count; ++id) {
            Row row = existingRow();
            row["ID"] = std::to_string(id);
            row["StartDate"] = "2012-08-0" + std::to_string(id) + " 17:00:00";
            row["StopDate"] = "2012-08-0" + std::to_string(id) + " 20:00:00";
            stored.push_back(id);
            overrides.store(row);
        }
        overrides.database.rows[cursorQuery] = [this] {
            Recordset rows({{"ID", ColumnType::Integer}});
            for (const int id : stored) {
                rows.addInteger(id);
            }
            return rows;
        };
    }
    void forget(int id) {
        std::erase(stored, id);
        overrides.database.rows.erase(scheduleQuery(id));
    }
    void load() { editor.Load(); }
    /// A new schedule from 12:00 to 13:00, open and then secure.
    void fillIn() {
        editor.setSlider(editor.start, 48);
        editor.setSlider(editor.stop, 52);
        editor.start.options.select(OverrideCommand::Open);
        editor.stop.options.select(OverrideCommand::Secure);
    }
    [[nodiscard]] const std::vector<std::string>& executed() const {
        return overrides.database.executed;
    }

    FakeOverrides overrides;
    std::vector<int> stored;
    OverrideEditor editor{overrides.services(), OverrideTexts(LocaleFormats{}, [](std::int16_t) {
                              return std::string();
                          })};
};

TEST(OverrideEditor, OpensOnANewSchedule) {
    Editor it;
    it.store(3);
    it.load();
    EXPECT_EQ(it.overrides.database.statements.front(), cursorQuery);
    EXPECT_THAT(it.overrides.database.statements, Contains(scheduleQuery(0)));
    EXPECT_EQ(it.editor.caption(), "Scheduled Override   New");
    EXPECT_EQ(it.editor.tabCaption(), "Lisbon:  Dock door");
    EXPECT_TRUE(it.editor.additionalDaysUsable());
    EXPECT_EQ(it.editor.operatorReadout(), "Ann  7/4/2012 9:00:00 AM");
    EXPECT_FALSE(it.editor.errorShown());
}

TEST(OverrideEditor, ANewScheduleIsMovedIntoTheLocationsFuture) {
    Editor it; // 09:00 as UTC is 04:00 in Chicago, where it is 09:00
    it.load();
    EXPECT_EQ(it.editor.start.time.moment().iso(), "2012-07-04T09:15:00");
    EXPECT_EQ(it.editor.start.readout, "9:15:00 AM");
    EXPECT_EQ(it.editor.stop.time.moment().iso(), "2012-07-04T09:15:00");
    EXPECT_EQ(it.editor.stop.readout, "9:15:00 AM");
}

TEST(OverrideEditor, AnExistingScheduleIsShownUnchangedAlsoInThePast) {
    Editor it;
    it.store(1);
    it.overrides.clock.set("2020-01-01T09:00:00", -360);
    it.load();
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.start.time.moment().iso(), "2012-08-01T12:00:00");
    it.editor.setSlider(it.editor.start, 3);
    EXPECT_EQ(it.editor.start.time.moment().iso(), "2012-08-01T00:45:00");
}

TEST(OverrideEditor, AnExistingScheduleAt1007IsShownAndSavedAs1000) {
    Editor it;
    it.store(1);
    Row row = existingRow();
    row["ID"] = "1";
    row["StartDate"] = "2012-08-01 15:07:30";
    it.overrides.store(row);
    it.load();
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.start.readout, "10:00:00 AM");
    it.editor.setDate(it.editor.stop, moment("2012-09-01"));
    EXPECT_TRUE(it.editor.cmdOK());
    EXPECT_THAT(it.executed().back(), HasSubstr("StartDate = #2012-08-01 15:00:00#"));
}

TEST(OverrideEditor, NewSchedulesSelectTheirDefaultCommands) {
    Editor door;
    door.load();
    EXPECT_EQ(door.editor.start.options.selected(), OverrideCommand::Open);
    EXPECT_EQ(door.editor.stop.options.selected(), OverrideCommand::TimeZone);
    Editor input(1);
    input.load();
    EXPECT_EQ(input.editor.start.options.selected(), OverrideCommand::Arm);
}

TEST(OverrideEditor, ACommandThatThePointDoesNotAcceptIsNotAvailableAndNotSelected) {
    Editor it;
    it.editor.point.OpenOpt = false;
    it.load();
    EXPECT_FALSE(it.editor.start.options.isAvailable(OverrideCommand::Open));
    EXPECT_FALSE(it.editor.stop.options.isAvailable(OverrideCommand::Open));
    EXPECT_EQ(it.editor.start.options.selected(), OverrideCommand::None);
    EXPECT_EQ(it.editor.stop.options.selected(), OverrideCommand::TimeZone);
}

TEST(OverrideEditor, ACommandThatIsNotAvailableLeavesTheSelectionOfTheScheduleBefore) {
    Editor it;
    it.store(2);
    Row row = existingRow();
    row["ID"] = "2";
    row["StartCmd"] = "2";
    it.overrides.store(row);
    it.editor.point.SecureOpt = false;
    it.load();
    it.editor.cmdNext();
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.start.options.selected(), OverrideCommand::Open);
}

TEST(OverrideEditor, ADoorOrOutputNeverOffersArmOrByPass) {
    for (const std::int16_t type : {std::int16_t{0}, std::int16_t{2}}) {
        Editor it(type);
        it.load();
        for (const OverrideSide* side : {&it.editor.start, &it.editor.stop}) {
            EXPECT_FALSE(side->options.isAvailable(OverrideCommand::Arm));
            EXPECT_FALSE(side->options.isAvailable(OverrideCommand::ByPass));
            EXPECT_TRUE(side->options.isAvailable(OverrideCommand::Open));
        }
    }
}

TEST(OverrideEditor, AnInputOffersArmAndByPass) {
    for (const std::int16_t type : {std::int16_t{1}, std::int16_t{3}}) {
        Editor it(type);
        it.load();
        EXPECT_TRUE(it.editor.start.options.isAvailable(OverrideCommand::Arm));
        EXPECT_TRUE(it.editor.stop.options.isAvailable(OverrideCommand::ByPass));
    }
}

TEST(OverrideEditor, WhileASliderIsMovedOnlyItsReadoutFollows) {
    Editor it;
    it.load();
    it.editor.moveSlider(it.editor.start, 3);
    EXPECT_EQ(it.editor.start.readout, "12:45:00 AM") << "in the past, and not corrected yet";
    it.editor.setSlider(it.editor.start, 3);
    EXPECT_EQ(it.editor.start.readout, "9:15:00 AM");
}

TEST(OverrideEditor, AChangeOfDateChecksItsOwnSideOnly) {
    Editor it;
    it.load();
    it.editor.moveSlider(it.editor.stop, 3);
    it.editor.setDate(it.editor.start, moment("2012-07-01"));
    EXPECT_EQ(it.editor.start.time.moment().iso(), "2012-07-04T09:15:00");
    EXPECT_EQ(it.editor.stop.readout, "12:45:00 AM");
    it.editor.setDate(it.editor.stop, moment("2012-07-05"));
    EXPECT_EQ(it.editor.stop.time.moment().iso(), "2012-07-05T00:45:00");
}

TEST(OverrideEditor, AtTheEndOfADayTheCorrectionGoesOnWithTheNext) {
    Editor it;
    it.overrides.clock.set("2012-07-04T23:50:00", -300);
    it.load();
    EXPECT_EQ(it.editor.start.time.moment().iso(), "2012-07-05T00:00:00");
    EXPECT_EQ(it.editor.stop.time.moment().iso(), "2012-07-05T00:00:00");
    EXPECT_EQ(it.editor.start.readout, "12:00:00 AM");
}

TEST(OverrideEditor, SavesANewScheduleInUtcWithPointOperatorAndStatus) {
    Editor it;
    it.load();
    it.fillIn();
    EXPECT_TRUE(it.editor.cmdOK());
    EXPECT_THAT(it.executed(),
                ElementsAre("INSERT INTO OvrSchedule (PointID, PointType, StartCmd, StopCmd, Opr, "
                            "OprID, Status, StartDate, StopDate) Values (11, 0, 1, 2, "
                            "'Ann  7/4/2012 9:00:00 AM', 3, 1, #2012-07-04 17:00:00#, "
                            "#2012-07-04 18:00:00#)"));
}

TEST(OverrideEditor, SavesAnExistingScheduleWithTheOperatorsNameAndNoBlankBeforeTheDate) {
    Editor it;
    it.store(1);
    it.load();
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.operatorReadout(), "Ann  7/1/2012");
    EXPECT_TRUE(it.editor.cmdOK());
    EXPECT_THAT(it.executed(),
                ElementsAre("UPDATE OvrSchedule SET StartCmd = 1, StartDate = #2012-08-01 "
                            "17:00:00#, StopCmd = 2, StopDate = #2012-08-01 20:00:00#, Opr = "
                            "'Ann7/4/2012 9:00:00 AM', OprID = 3, Status = 5 WHERE ID = 1"));
}

TEST(OverrideEditor, AnExistingScheduleThatWasNeverValidatedBecomesScheduled) {
    Editor it;
    it.store(1);
    Row row = existingRow();
    row["ID"] = "1";
    row["Status"] = "0";
    it.overrides.store(row);
    it.load();
    it.editor.cmdNext();
    EXPECT_TRUE(it.editor.cmdOK());
    EXPECT_THAT(it.executed().back(), HasSubstr("Status = 1"));
}

TEST(OverrideEditor, AStopLessThanAMinuteAfterTheStartIsAnError) {
    Editor it;
    it.load();
    it.fillIn();
    it.editor.setSlider(it.editor.stop, 48);
    EXPECT_FALSE(it.editor.cmdOK());
    EXPECT_TRUE(it.editor.errorShown());
    EXPECT_EQ(it.editor.errorText(), "Stop Date cannot be less than Start Date !!");
    EXPECT_THAT(it.executed(), IsEmpty());
    it.editor.cmdErrOK();
    EXPECT_FALSE(it.editor.errorShown());
}

TEST(OverrideEditor, ASideWithoutACommandIsAnError) {
    for (const bool startIsMissing : {true, false}) {
        Editor it;
        it.load();
        it.fillIn();
        (startIsMissing ? it.editor.start : it.editor.stop).options.select(OverrideCommand::None);
        EXPECT_FALSE(it.editor.cmdOK());
        EXPECT_EQ(it.editor.errorText(), "Please choose a start command and a stop command.");
        EXPECT_THAT(it.executed(), IsEmpty());
    }
}

TEST(OverrideEditor, TheErrorTextIsNeverSetBack) {
    Editor it;
    it.load();
    it.fillIn();
    it.editor.stop.options.select(OverrideCommand::None);
    it.editor.cmdOK();
    it.editor.cmdErrOK();
    it.editor.stop.options.select(OverrideCommand::Secure);
    it.editor.setSlider(it.editor.stop, 48);
    EXPECT_FALSE(it.editor.cmdOK());
    EXPECT_EQ(it.editor.errorText(), "Please choose a start command and a stop command.");
}

TEST(OverrideEditor, SecureCountsAsAStartOnlyWhereItIsAvailable) {
    Editor it;
    it.load();
    it.fillIn();
    it.editor.start.options.select(OverrideCommand::Secure);
    it.editor.start.options.makeAvailable(OverrideCommand::Secure, false);
    EXPECT_FALSE(it.editor.cmdOK());
    it.editor.cmdErrOK();
    it.editor.start.options.select(OverrideCommand::TimeZone);
    it.editor.start.options.makeAvailable(OverrideCommand::TimeZone, false);
    it.editor.stop.options.makeAvailable(OverrideCommand::Secure, false);
    EXPECT_TRUE(it.editor.cmdOK()) << "any other command counts where it is selected";
    EXPECT_THAT(it.executed().back(), HasSubstr("Values (11, 0, 3, 2,"));
}

TEST(OverrideEditor, EachAdditionalDayBecomesARowWithTheGeneralTabsTimes) {
    Editor it;
    it.load();
    it.fillIn();
    it.editor.cmdAdd2List(moment("2012-07-05"), moment("2012-07-05"));
    it.editor.cmdAdd2List(moment("2012-12-06"), moment("2012-12-07"));
    EXPECT_TRUE(it.editor.cmdOK());
    ASSERT_THAT(it.executed(), SizeIs(3));
    const std::string same = "INSERT INTO OvrSchedule (PointID, PointType, StartCmd, StopCmd, Opr, "
                             "OprID, Status, StartDate, StopDate) Values (11, 0, 1, 2, "
                             "'Ann  7/4/2012 9:00:00 AM', 3, 1, ";
    EXPECT_EQ(it.executed()[1], same + "#2012-07-05 17:00:00#, #2012-07-05 18:00:00#)");
    EXPECT_EQ(it.executed()[2], same + "#2012-12-06 18:00:00#, #2012-12-07 19:00:00#)")
        << "standard time in December";
    EXPECT_THAT(it.editor.additionalDays(), IsEmpty());
}

TEST(OverrideEditor, AnAdditionalDayThatStopsBeforeItStartsIsDroppedWithoutAMessage) {
    Editor it;
    it.load();
    it.fillIn();
    it.editor.cmdAdd2List(moment("2012-07-06"), moment("2012-07-05"));
    it.editor.cmdAdd2List(moment("2012-07-07"), moment("2012-07-07"));
    EXPECT_TRUE(it.editor.cmdOK());
    ASSERT_THAT(it.executed(), SizeIs(2));
    EXPECT_THAT(it.executed()[1], HasSubstr("#2012-07-07 17:00:00#"));
    EXPECT_FALSE(it.editor.errorShown());
}

TEST(OverrideEditor, AnAdditionalDayIsDroppedWhereTheGeneralTabStopsNextDayBeforeItStarts) {
    Editor it;
    it.load();
    it.fillIn();
    it.editor.setDate(it.editor.stop, moment("2012-07-05"));
    it.editor.setSlider(it.editor.stop, 4);
    it.editor.cmdAdd2List(moment("2012-07-10"), moment("2012-07-10"));
    it.editor.cmdAdd2List(moment("2012-07-11"), moment("2012-07-12"));
    EXPECT_TRUE(it.editor.cmdOK());
    ASSERT_THAT(it.executed(), SizeIs(2));
    EXPECT_THAT(it.executed()[1], HasSubstr("#2012-07-11 17:00:00#, #2012-07-12 06:00:00#"));
}

TEST(OverrideEditor, AFailedSaveDoesNotKeepTheAdditionalDaysFromBeingTried) {
    Editor it;
    it.load();
    it.fillIn();
    it.editor.cmdAdd2List(moment("2012-07-05"), moment("2012-07-05"));
    it.overrides.database.failsToExecute = true;
    EXPECT_TRUE(it.editor.cmdOK()) << "the operator is not told here";
    EXPECT_THAT(it.executed(), SizeIs(2));
    EXPECT_THAT(it.overrides.database.reports, SizeIs(2));
}

TEST(OverrideEditor, AdditionalDaysAreAddedAndRemovedByKey) {
    Editor it;
    it.load();
    it.editor.cmdAdd2List(moment("2012-07-05"), moment("2012-07-06"));
    it.editor.cmdAdd2List(moment("2012-07-07T12:00:00"), moment("2012-07-08"));
    ASSERT_THAT(it.editor.additionalDays(), SizeIs(2));
    EXPECT_EQ(it.editor.additionalDays()[0].key, "ID1");
    EXPECT_EQ(it.editor.additionalDays()[1].key, "ID2");
    EXPECT_EQ(it.editor.additionalDays()[1].start.iso(), "2012-07-07T00:00:00");
    it.editor.cmdDelList("ID1");
    it.editor.cmdDelList("ID9");
    ASSERT_THAT(it.editor.additionalDays(), SizeIs(1));
    it.editor.cmdAdd2List(moment("2012-07-09"), moment("2012-07-09"));
    EXPECT_EQ(it.editor.additionalDays()[1].key, "ID3") << "ID2 is taken";
}

TEST(OverrideEditor, AnotherScheduleClearsTheAdditionalDaysAndOnlyANewOneHasThem) {
    Editor it;
    it.store(1);
    it.load();
    it.editor.cmdAdd2List(moment("2012-07-05"), moment("2012-07-06"));
    it.editor.cmdNext();
    EXPECT_THAT(it.editor.additionalDays(), IsEmpty());
    EXPECT_FALSE(it.editor.additionalDaysUsable());
}

TEST(OverrideEditor, TheFirstNextShowsTheFirstStoredSchedule) {
    Editor it;
    it.store(3);
    it.load();
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.caption(), "1 of 3   Scheduled Override");
    EXPECT_EQ(it.editor.start.time.moment().iso(), "2012-08-01T12:00:00");
}

TEST(OverrideEditor, BrowsesTheSchedulesOfTheNumberWhateverTheirType) {
    Editor it(3);
    it.store(1); // of type 0
    it.load();
    EXPECT_EQ(it.overrides.database.statements.front(), cursorQuery);
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.caption(), "1 of 1   Scheduled Override");
}

TEST(OverrideEditor, NextGoesToTheEndAndStaysOnANewSchedule) {
    Editor it;
    it.store(2);
    it.load();
    it.editor.cmdNext();
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.caption(), "2 of 2   Scheduled Override");
    for (int step = 0; step < 3; ++step) {
        it.editor.cmdNext();
        EXPECT_EQ(it.editor.caption(), "Scheduled Override   New");
        EXPECT_TRUE(it.editor.additionalDaysUsable());
    }
    it.editor.cmdPrevious();
    EXPECT_EQ(it.editor.caption(), "2 of 2   Scheduled Override");
    it.editor.cmdPrevious();
    EXPECT_EQ(it.editor.caption(), "1 of 2   Scheduled Override");
    it.editor.cmdPrevious();
    EXPECT_EQ(it.editor.caption(), "Scheduled Override   New");
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.caption(), "1 of 2   Scheduled Override");
}

TEST(OverrideEditor, TheCursorStandsOneRowAheadOfWhatIsShown) {
    Editor it;
    it.store(3);
    it.load();
    it.editor.cmdNext();
    it.editor.cmdPrevious();
    EXPECT_EQ(it.editor.caption(), "2 of 3   Scheduled Override") << "where the cursor stood";
    it.editor.cmdPrevious();
    EXPECT_EQ(it.editor.caption(), "1 of 3   Scheduled Override");
}

TEST(OverrideEditor, APointWithoutSchedulesShowsNewOnesBothWays) {
    Editor it;
    it.load();
    for (int step = 0; step < 2; ++step) {
        it.editor.cmdNext();
        EXPECT_EQ(it.editor.caption(), "Scheduled Override   New");
        it.editor.cmdPrevious();
        EXPECT_EQ(it.editor.caption(), "Scheduled Override   New");
    }
}

TEST(OverrideEditor, DeletesWithoutAskingAndShowsTheFirstOfTheRest) {
    Editor it;
    it.store(3);
    it.load();
    it.editor.cmdNext();
    it.editor.cmdNext();
    it.stored = {1, 3};
    it.editor.cmdDelete();
    EXPECT_THAT(it.executed(), ElementsAre("Delete FROM OvrSchedule WHERE ID = 2"));
    EXPECT_EQ(it.editor.caption(), "1 of 2   Scheduled Override");
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.caption(), "2 of 2   Scheduled Override");
    EXPECT_EQ(it.editor.start.time.moment().iso(), "2012-08-03T12:00:00");
}

TEST(OverrideEditor, DeletingANewScheduleDeletesKey0) {
    Editor it;
    it.load();
    it.editor.cmdDelete();
    EXPECT_THAT(it.executed(), ElementsAre("Delete FROM OvrSchedule WHERE ID = 0"));
}

TEST(OverrideEditor, ARowThatHasGoneIsShownAsNewAndSaidSo) {
    Editor it;
    it.store(2);
    it.load();
    it.forget(1);
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.caption(), "1 of 2   Scheduled Override");
    EXPECT_TRUE(it.editor.additionalDaysUsable());
    EXPECT_EQ(it.editor.notice(), "This schedule has been deleted meanwhile: OK saves a new one.");
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.notice(), "");
}

TEST(OverrideEditor, SavingARowThatSomebodyDeletedMeanwhileUpdatesNothingAndDoesNotCrash) {
    Editor it;
    it.store(1);
    it.load();
    it.editor.cmdNext();
    it.forget(1);
    EXPECT_TRUE(it.editor.cmdOK());
    EXPECT_TRUE(it.executed().back().ends_with(" WHERE ID = 1"));
}

TEST(OverrideEditor, DatabaseErrorsWhileBrowsingAreIgnored) {
    Editor it;
    it.store(2);
    it.overrides.database.failsAt = cursorQuery;
    it.load();
    it.editor.cmdNext();
    EXPECT_EQ(it.editor.caption(), "Scheduled Override   New");
    it.overrides.database.failsAt = scheduleQuery(1);
    it.editor.cmdDelete();
    EXPECT_EQ(it.editor.caption(), "1 of 2   Scheduled Override");
}

TEST(OverrideEditor, ClosedWhileItsMessagesRunLeavesEverythingAsItIs) {
    for (const int pass : {1, 2}) {
        Editor it;
        it.store(2);
        it.load();
        int calls = 0;
        it.overrides.onPending = [&] {
            if (++calls == pass) {
                it.editor.close();
            }
        };
        it.editor.cmdNext();
        EXPECT_FALSE(it.editor.cmdOK());
        it.editor.cmdDelete();
        it.editor.setSlider(it.editor.start, 5);
        EXPECT_FALSE(it.editor.additionalDaysUsable());
        EXPECT_THAT(it.executed(), IsEmpty());
    }
}

TEST(OverrideEditor, ClosedWhileItLoadsLeavesEverythingAsItIs) {
    Editor it;
    it.overrides.onPending = [&] { it.editor.close(); };
    it.load();
    EXPECT_FALSE(it.editor.cmdOK());
}

TEST(OverrideEditor, TellsTheZoneOfTheTimes) {
    Editor it;
    it.overrides.clock.set("2012-07-04T15:00:00", 60);
    it.load();
    EXPECT_EQ(it.editor.zoneLine(),
              "Times are in Central Standard Time (UTC-05:00 now), 6 h behind this workstation.");
}

TEST(OverrideEditor, APointPassedToAnOpenEditorIsNotReloadedButItsZoneIsTold) {
    Editor it;
    it.store(1);
    it.load();
    it.editor.cmdNext();
    it.editor.point.PointID = 12;
    it.editor.point.PointName = "Gate";
    it.editor.pointPassed();
    EXPECT_EQ(it.editor.caption(), "1 of 1   Scheduled Override");
    EXPECT_EQ(it.editor.start.time.moment().iso(), "2012-08-01T12:00:00");
    EXPECT_EQ(it.editor.zoneLine(),
              "Times are in UTC (the point has no location), 5 h ahead of this workstation.");
    EXPECT_EQ(it.editor.notice(), "OK saves what is shown for Gate at Lisbon.");
}

} // namespace
} // namespace kintar
