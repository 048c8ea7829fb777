#include "reports/objInRpt.h"

#include "reports/ReportTwins.h"
#include "support/FakeServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace kintar::reports {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::MemoryFiles;
using testing::MemoryReportDatabases;
using ::testing::Not;
using testing::SetClock;
using ::testing::StartsWith;

Recordset integers(const std::vector<std::string>& names,
                   const std::vector<std::vector<std::int64_t>>& rows) {
    std::vector<Column> columns;
    for (const std::string& name : names) {
        columns.push_back({name, ColumnType::Integer});
    }
    Recordset recordset(columns);
    for (const auto& row : rows) {
        for (const std::int64_t value : row) {
            recordset.addInteger(value);
        }
    }
    return recordset;
}

struct Use {
    std::int64_t id;
    std::int64_t card;
    const char* flag; ///< null for Null
};

Recordset useRows(const std::vector<Use>& uses) {
    Recordset rows({{"ID", ColumnType::Integer},
                    {"CardID", ColumnType::Integer},
                    {"Inout1", ColumnType::Text}});
    for (const Use& use : uses) {
        rows.addInteger(use.id);
        rows.addInteger(use.card);
        if (use.flag == nullptr) {
            rows.addNull();
        } else {
            rows.addText(use.flag);
        }
    }
    return rows;
}

/// A record helper whose answers are set statement by statement; it writes down every statement.
class ScriptedRecord final : public TarnRec {
public:
    Recordset OpenRecordset(std::string_view sql, Connection& /*connection*/) override {
        statements.emplace_back(sql);
        failWhereAsked(sql);
        if (sql.starts_with("Select LocGrp")) {
            return integers({"LocGrp"}, locGrp);
        }
        if (sql.starts_with("Select Loc From Loc")) {
            return integers({"Loc"}, {{31}, {32}});
        }
        if (sql.starts_with("Select ID, NameID")) {
            return integers({"ID", "NameID"}, cards);
        }
        if (sql.starts_with("Select LocCards.ID")) {
            return useRows(nextUses());
        }
        if (sql.starts_with("Select Loc, Dev")) {
            return integers({"Loc", "Dev"}, written);
        }
        return detail();
    }
    void ExecuteSQL(std::string_view sql, Connection& /*connection*/) override {
        statements.emplace_back(sql);
        failWhereAsked(sql);
    }
    std::size_t readTogether(Connection& /*connection*/) override { return together; }
    bool FindRecord(Recordset& /*rows*/, std::string_view /*criterion*/) override { return false; }
    std::string SqlText(std::string_view text) override { return "'" + std::string(text) + "'"; }
    std::string SqlDate(DateTime value) override { return "#" + value.iso() + "#"; }
    void FillListBox(ListBox& /*list*/, Recordset& /*rows*/, std::string_view /*textField*/,
                     std::string_view /*dataField*/) override {}
    void PrepareForm(Connection& /*connection*/, PreparableForm& /*form*/) override {}

    [[nodiscard]] std::vector<std::string> starting(std::string_view start) const {
        std::vector<std::string> found;
        for (const std::string& statement : statements) {
            if (statement.starts_with(start)) {
                found.push_back(statement);
            }
        }
        return found;
    }

    std::vector<std::string> statements;
    std::size_t together = 1;
    std::vector<std::vector<std::int64_t>> locGrp{{3}};
    std::vector<std::vector<std::int64_t>> cards{{1, 100}};
    /// The answers about the holders' uses, in turn.
    std::vector<std::vector<Use>> uses;
    std::vector<std::vector<std::int64_t>> written;
    bool detailMissing = false;
    bool detailDateDamaged = false;
    /// A statement that starts so fails.
    std::string failing;

private:
    void failWhereAsked(std::string_view sql) const {
        if (!failing.empty() && sql.starts_with(failing)) {
            throw RunTimeError(3704, "the database has gone");
        }
    }
    std::vector<Use> nextUses() {
        return asked_ < uses.size() ? uses[asked_++] : std::vector<Use>();
    }
    [[nodiscard]] Recordset detail() const {
        Recordset rows({{"Loc", ColumnType::Integer},
                        {"LocName", ColumnType::Text},
                        {"DevName", ColumnType::Text},
                        {"FName", ColumnType::Text},
                        {"LName", ColumnType::Text},
                        {"CompName", ColumnType::Text},
                        {"LastDev", ColumnType::Integer},
                        {"LastDate", ColumnType::DateTime}});
        if (!detailMissing) {
            rows.addInteger(31);
            rows.addText("North");
            rows.addNull();
            rows.addText("Jane");
            rows.addText("Doe");
            rows.addNull();
            rows.addNull();
            rows.addText(detailDateDamaged ? "yesterday" : "2012-03-14 10:00:00");
        }
        return rows;
    }
    std::size_t asked_ = 0;
};

struct Workshop {
    ScriptedRecord record;
    ClosedConnection data;
    MemoryFiles files;
    MemoryReportDatabases databases{files};
    SetClock clock;
    InRptState state;
    std::vector<std::string> reports;
    bool alive = true;

    InRptWorld world() {
        return {record,
                data,
                databases,
                files,
                clock,
                "/temp",
                [] { return std::string("/data"); },
                [this](const std::exception& error, std::string_view routine) {
                    reports.push_back(std::string(routine) + ": " + error.what());
                },
                [this] { return alive; }};
    }
    InRptBuild built(std::int32_t loc = 31) {
        InRptBuild build(world(), loc, state);
        while (build.step()) {
        }
        return build;
    }
    [[nodiscard]] bool listIsThere() const { return files.files.contains("/temp/InRpt.Mdb"); }
};

TEST(InRptBuild, SendsItsStatementsInOrder) {
    Workshop shop;
    shop.record.uses = {{{900, 1, "I"}}};
    shop.record.written = {{31, 0}};
    EXPECT_TRUE(shop.built().succeeded());
    EXPECT_THAT(
        shop.record.statements,
        ElementsAre(locGrpQuery(31), groupLocationsQuery(3), activeCardsQuery(3),
                    cardUsesQuery(100, "31, 32", "#2012-03-12T17:05:00#"), detailQuery(900),
                    "Insert Into InRpt (Loc, LocName, Dev, DevName, Name, Company, LastUsed) "
                    "VALUES (31, 'North', 0, '', 'Doe, Jane', '', #2012-03-14T10:00:00#)",
                    totalsQuery(),
                    "Insert Into Totals (Loc, Dev, DevTotal, LocGrpTotal) Values (31, 0, 1, 1)"));
    EXPECT_THAT(shop.reports, IsEmpty());
    EXPECT_TRUE(shop.listIsThere());
}

TEST(InRptBuild, AsksOncePerHolderAndTakesTheTimeAnewForEach) {
    Workshop shop;
    shop.record.cards = {{1, 100}, {2, 100}, {3, 101}};
    shop.clock.minutesAtEachLook = 1;
    shop.built();
    EXPECT_THAT(shop.record.starting("Select LocCards.ID"),
                ElementsAre(cardUsesQuery(100, "31, 32", "#2012-03-12T17:05:00#"),
                            cardUsesQuery(101, "31, 32", "#2012-03-12T17:06:00#")));
}

TEST(InRptBuild, HoldersReadTogetherGiveTheSameRowsInTheSameOrder) {
    for (const std::size_t together : {1U, 2U, 3U, 100U}) {
        Workshop shop;
        shop.record.together = together;
        shop.clock.minutesAtEachLook = 1;
        shop.record.cards = {{1, 100}, {2, 100}, {3, 101}, {4, 102}, {5, 102}};
        shop.record.uses = {{{900, 1, "I"}, {901, 2, "I"}}, {}, {{902, 4, "I"}, {903, 5, "N"}}};
        EXPECT_TRUE(shop.built().succeeded());
        EXPECT_THAT(shop.record.starting("Select LocCards.ID"),
                    ElementsAre(cardUsesQuery(100, "31, 32", "#2012-03-12T17:05:00#"),
                                cardUsesQuery(101, "31, 32", "#2012-03-12T17:06:00#"),
                                cardUsesQuery(102, "31, 32", "#2012-03-12T17:07:00#")));
        EXPECT_THAT(shop.record.starting("Select Loc.Loc"),
                    ElementsAre(detailQuery(900), detailQuery(901), detailQuery(902)));
        EXPECT_THAT(shop.record.starting("Insert Into InRpt"), ::testing::SizeIs(3));
        EXPECT_EQ(shop.state.inCount, 3);
    }
}

TEST(InRptBuild, WhatWasReadBeforeAnErrorCounts) {
    for (const std::size_t together : {1U, 100U}) {
        Workshop shop;
        shop.record.together = together;
        shop.record.cards = {{1, 100}, {2, 101}, {3, 102}};
        shop.record.uses = {{{900, 1, "I"}}, {{901, 2, "I"}}};
        shop.record.failing =
            "Select LocCards.ID, LocCards.CardID, InOut1 From LocCards Inner Join "
            "Cards On LocCards.CardID = Cards.ID Where Cards.NameID = 102";
        EXPECT_FALSE(shop.built().succeeded());
        EXPECT_THAT(shop.reports, ElementsAre("objInRpt/PopulateTable: the database has gone"));
        EXPECT_EQ(shop.state.inCount, 2);
    }
}

TEST(InRptBuild, CountsOnlyTheLatestUseOfEachCard) {
    Workshop shop;
    shop.record.uses = {
        {{900, 1, "N"}, {899, 1, "I"}, {800, 2, "I"}, {799, 2, "N"}, {700, 3, "I"}}};
    shop.built();
    EXPECT_THAT(shop.record.starting("Select Loc.Loc"),
                ElementsAre(detailQuery(800), detailQuery(700)));
    EXPECT_EQ(shop.state.inCount, 2);
}

TEST(InRptBuild, SkipsEveryFlagThatIsNotAnI) {
    Workshop shop;
    shop.record.uses = {{{1, 1, "N"}, {2, 2, "i"}, {3, 3, ""}, {4, 4, nullptr}, {5, 5, "II"}}};
    shop.built();
    EXPECT_THAT(shop.record.starting("Select Loc.Loc"), IsEmpty());
}

TEST(InRptBuild, InsertsNothingWhereTheDetailQueryReturnsNoRow) {
    Workshop shop;
    shop.record.uses = {{{900, 1, "I"}}};
    shop.record.detailMissing = true;
    EXPECT_TRUE(shop.built().succeeded());
    EXPECT_THAT(shop.record.starting("Insert"), IsEmpty());
    EXPECT_EQ(shop.state.inCount, 0);
}

TEST(InRptBuild, KeepsARowWhoseDateIsDamaged) {
    Workshop shop;
    shop.record.uses = {{{900, 1, "I"}}};
    shop.record.detailDateDamaged = true;
    EXPECT_TRUE(shop.built().succeeded());
    EXPECT_THAT(shop.record.starting("Insert"), ElementsAre(HasSubstr(", Null)")));
}

TEST(InRptBuild, WritesATotalAtEachChangeOfPairAndAfterTheLastRow) {
    Workshop shop;
    shop.record.uses = {{{900, 1, "I"}, {901, 2, "I"}, {902, 3, "I"}, {903, 4, "I"}}};
    shop.record.written = {{31, 1}, {31, 1}, {31, 2}, {32, 2}};
    shop.built();
    EXPECT_THAT(shop.record.starting("Insert Into Totals"),
                ElementsAre(insertTotals({31, 1, 2, 4}), insertTotals({31, 2, 1, 4}),
                            insertTotals({32, 2, 1, 4})));
}

TEST(InRptBuild, WritesNoTotalWithoutARow) {
    Workshop shop;
    EXPECT_TRUE(shop.built().succeeded());
    EXPECT_THAT(shop.record.starting("Insert"), IsEmpty());
    EXPECT_TRUE(shop.listIsThere());
}

TEST(InRptBuild, GoesOnCountingOverASecondBuildOfTheSameObject) {
    Workshop shop;
    shop.record.uses = {{{900, 1, "I"}}, {{900, 1, "I"}}};
    shop.record.written = {{31, 1}};
    shop.built();
    shop.built();
    EXPECT_THAT(shop.record.starting("Insert Into Totals"),
                ElementsAre(insertTotals({31, 1, 1, 1}), insertTotals({31, 1, 1, 2})));
}

TEST(InRptBuild, ReportsAnOverflowOfTheCount) {
    Workshop shop;
    shop.state.inCount = std::numeric_limits<std::int32_t>::max();
    shop.record.uses = {{{900, 1, "I"}}};
    EXPECT_FALSE(shop.built().succeeded());
    EXPECT_THAT(shop.reports, ElementsAre("objInRpt/PopulateTable: Overflow"));
}

TEST(InRptBuild, TakesListAndPrinterFromTheMap) {
    Workshop shop;
    shop.files.files["/data/InRptByLoc.txt"] = "0,31,77,;Gate Printer\r\n";
    const InRptBuild build = shop.built();
    EXPECT_EQ(build.locationList(), "0,31,77");
    EXPECT_EQ(shop.state.printer, "Gate Printer");
    EXPECT_THAT(shop.record.starting("Select LocCards.ID"),
                ElementsAre(HasSubstr("And Loc In (0,31,77) And  LocCards")));
}

TEST(InRptBuild, LeavesListAndPrinterWhereThereIsNoMapOrItCannotBeRead) {
    Workshop shop;
    shop.state.printer = "of the build before";
    EXPECT_EQ(shop.built().locationList(), "31, 32");
    EXPECT_EQ(shop.state.printer, "of the build before");
    shop.files.files["/data/InRptByLoc.txt"] = "0,31,;Gate\n";
    // The folder of the map is unreadable; the temporary folder's names are still known.
    shop.files.unreadable = true;
    EXPECT_TRUE(shop.built().succeeded());
    EXPECT_EQ(shop.state.printer, "of the build before");
}

TEST(InRptBuild, ReplacesTheFileOfTheRunBefore) {
    Workshop shop;
    shop.files.files["/temp/InRpt.Mdb"] = "an old list";
    shop.built();
    EXPECT_EQ(shop.files.files.at("/temp/InRpt.Mdb"), "a new list");
}

TEST(InRptBuild, DeletesTheOldFileWhateverItsLetterCase) {
    Workshop shop;
    shop.files.files["/temp/INRPT.MDB"] = "an old list";
    shop.built();
    EXPECT_FALSE(shop.files.files.contains("/temp/INRPT.MDB"));
}

TEST(InRptBuild, LeavesNoFileWhereAStatementFails) {
    const struct {
        const char* failing;
        const char* report;
    } cases[] = {
        {"Select LocGrp", "objInRpt/PopulateTable: the database has gone"},
        {"Select Loc From", "objInRpt/PopulateTable: the database has gone"},
        {"Select ID", "objInRpt/PopulateTable: the database has gone"},
        {"Select LocCards", "objInRpt/PopulateTable: the database has gone"},
        {"Select Loc.Loc", "objInRpt/PopulateTable: the database has gone"},
        {"Insert Into InRpt", "objInRpt/PopulateTable: the database has gone"},
        {"Select Loc, Dev", "objInRpt/PopulateTable: the database has gone"},
        {"Insert Into Totals", "objInRpt/NewTotal: the database has gone"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.failing);
        Workshop shop;
        shop.files.files["/temp/InRpt.Mdb"] = "an old list";
        shop.record.uses = {{{900, 1, "I"}}};
        shop.record.written = {{31, 1}, {31, 2}};
        shop.record.failing = item.failing;
        const InRptBuild build = shop.built();
        EXPECT_FALSE(build.succeeded());
        EXPECT_EQ(build.error(), "the database has gone");
        EXPECT_THAT(shop.reports, ElementsAre(item.report));
        EXPECT_FALSE(shop.listIsThere());
    }
}

TEST(InRptBuild, ReportsAnUnknownLocation) {
    Workshop shop;
    shop.record.locGrp.clear();
    EXPECT_FALSE(shop.built(999).succeeded());
    EXPECT_THAT(shop.reports, ElementsAre(StartsWith("objInRpt/PopulateTable: ")));
}

TEST(InRptBuild, ReportsWhatFailsAtTheFileUnderItsOwnRoutines) {
    Workshop unwritable;
    unwritable.databases.noPlace = true;
    EXPECT_FALSE(unwritable.built().succeeded());
    EXPECT_THAT(unwritable.reports, ElementsAre("objInRpt/MakeRptMdb: Permission denied"));
    EXPECT_THAT(unwritable.record.statements, IsEmpty());

    Workshop full;
    full.databases.cannotMove = true;
    EXPECT_FALSE(full.built().succeeded());
    EXPECT_THAT(full.reports, ElementsAre("objInRpt/Create: Disk full"));
    EXPECT_FALSE(full.listIsThere());
}

TEST(InRptBuild, WritesNothingWithoutATemporaryFolder) {
    Workshop shop;
    InRptWorld world = shop.world();
    world.tempFolder.clear();
    InRptBuild build(world, 31, shop.state);
    EXPECT_FALSE(build.step());
    EXPECT_THAT(shop.reports, ElementsAre(StartsWith("objInRpt/MakeRptMdb: Path not found")));
    EXPECT_THAT(shop.files.files, IsEmpty());
}

TEST(InRptBuild, EndsWithTheSharedStateAndLeavesNothing) {
    Workshop shop;
    shop.record.uses = {{{900, 1, "I"}}};
    InRptBuild build(shop.world(), 31, shop.state);
    EXPECT_TRUE(build.step());
    EXPECT_TRUE(build.step());
    shop.alive = false;
    const std::size_t sentBefore = shop.record.statements.size();
    EXPECT_FALSE(build.step());
    EXPECT_FALSE(build.succeeded());
    EXPECT_EQ(shop.record.statements.size(), sentBefore);
    EXPECT_FALSE(shop.listIsThere());
}

TEST(InRptBuild, GivesTurnsAndShowsHowFarItIs) {
    Workshop shop;
    shop.record.cards.clear();
    for (std::int64_t holder = 1; holder <= 200; ++holder) {
        shop.record.cards.push_back({holder, holder});
    }
    InRptBuild build(shop.world(), 31, shop.state);
    std::vector<std::size_t> seen;
    while (build.step()) {
        seen.push_back(build.cardsDone());
    }
    EXPECT_EQ(build.cardsInAll(), 200U);
    EXPECT_THAT(seen, ElementsAre(0U, 0U, 64U, 128U, 192U, 200U, 200U));
}

/// What objects of the class need, and how often their calls were answered.
struct InRptRoom {
    std::unique_ptr<objInRpt> make() {
        return std::make_unique<objInRpt>(server.globals, databases, files, clock, loop, turns);
    }
    Completion answer() {
        return [this](const std::optional<RunTimeError>& error) {
            EXPECT_FALSE(error);
            ++answers;
        };
    }

    testing::FakeServer server;
    MemoryFiles files;
    MemoryReportDatabases databases{files};
    SetClock clock;
    testing::HandLoop loop;
    ReportTurns turns{loop};
    int answers = 0;
};

TEST(objInRptTest, ReportsThroughTheCompanionAndRaisesNothing) {
    InRptRoom room;
    room.server.globals.addInstance();
    room.server.takeEvents();
    const auto inRpt = room.make();
    inRpt->Create(31, room.answer());
    EXPECT_EQ(room.answers, 0) << "it is built a step at each turn of the event loop";
    room.loop.turnUntilIdle();
    EXPECT_EQ(room.answers, 1);
    EXPECT_FALSE(inRpt->build()->succeeded());
    EXPECT_THAT(room.server.events, Contains(HasSubstr("\r\nobjInRpt/PopulateTable 2")));
    EXPECT_EQ(inRpt->Printer(), "");
}

TEST(objInRptTest, WritesNothingBeforeTheSharedStateIsUp) {
    InRptRoom room;
    const auto inRpt = room.make();
    inRpt->Create(31, room.answer());
    room.loop.turnUntilIdle();
    EXPECT_EQ(room.answers, 1);
    EXPECT_THAT(room.files.files, IsEmpty());
    EXPECT_THAT(room.server.events, Not(Contains(StartsWith("Select"))));
}

TEST(objInRptTest, WaitsForWhoeverHasTheReportDatabase) {
    InRptRoom room;
    room.server.globals.addInstance();
    ReportTurns::Turn held;
    room.turns.take([&held](ReportTurns::Turn turn) { held = std::move(turn); });
    const auto inRpt = room.make();
    inRpt->Create(31, room.answer());
    room.loop.turnUntilIdle();
    EXPECT_EQ(inRpt->build(), nullptr);
    held.reset();
    room.loop.turnUntilIdle();
    EXPECT_NE(inRpt->build(), nullptr);
    EXPECT_EQ(room.answers, 1);
}

TEST(objInRptTest, LeavesTheTurnToTheNextWhenItEndsInTheMiddle) {
    InRptRoom room;
    room.server.globals.addInstance();
    auto first = room.make();
    const auto second = room.make();
    first->Create(31, room.answer());
    second->Create(31, room.answer());
    room.loop.turn();
    first.reset();
    room.loop.turnUntilIdle();
    EXPECT_EQ(room.answers, 1) << "of the second; nobody waits for the first any more";
}

TEST(objInRptTest, HasItsMembersInSlotOrder) {
    InRptRoom room;
    const PublicClass described = objInRpt::describe(room.server.globals, room.databases,
                                                     room.files, room.clock, room.loop, room.turns);
    ASSERT_EQ(described.members.size(), 2U);
    EXPECT_EQ(described.members[0].name, "Create");
    EXPECT_EQ(described.members[0].kind, MemberKind::Method);
    EXPECT_EQ(described.members[0].parameters.at(0).type, ValueType::Int32);
    EXPECT_EQ(described.members[1].name, "Printer");
    EXPECT_EQ(described.members[1].kind, MemberKind::ReadOnly);
}

} // namespace
} // namespace kintar::reports
