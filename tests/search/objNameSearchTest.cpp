#include "search/objNameSearch.h"

#include "search/NameSearchFixture.h"
#include "support/ErrorNumber.h"

namespace kintar::testing {
namespace {

using Statements = std::vector<std::string>;
constexpr auto topmost = static_cast<int>(platform::InsertAfter::Topmost);
constexpr auto top = static_cast<int>(platform::InsertAfter::Top);
constexpr unsigned neitherMovedNorSized = 3;

TEST_F(NameSearch, CreationStartsUpThenLetsMessagesRunThenReadsTheImageTypes) {
    object = twins.create();
    const Events events = twins.takeEvents();
    ASSERT_GE(events.size(), 2U);
    EXPECT_EQ(events.back(), "pending messages");
    EXPECT_EQ(twins.globals.gInstanceCount, 1);
    EXPECT_EQ(twins.tables().takeStatements(),
              Statements{"SELECT LocGrp, Num FROM ImageType WHERE DefaultImage <> 0"});
    EXPECT_FALSE(twins.place.exists());
}

TEST_F(NameSearch, ACreationThatCannotReadFailsAndTakesItsCountBack) {
    twins.tables().forget("SELECT LocGrp, Num FROM ImageType WHERE DefaultImage <> 0");
    EXPECT_THROW(twins.create(), RunTimeError);
    EXPECT_EQ(twins.globals.gInstanceCount, 0);
    EXPECT_FALSE(twins.globals.gSys);
}

TEST_F(NameSearch, ASecondDefaultImageTypeOfAGroupFailsTheCreation) {
    twins.tables().answer("SELECT LocGrp, Num FROM ImageType WHERE DefaultImage <> 0",
                          {"LocGrp", "Num"}, {Row{2, 4}, Row{2, 5}});
    EXPECT_EQ(testing::errorNumber([&] { twins.create(); }), 457);
    EXPECT_EQ(twins.globals.gInstanceCount, 0);
}

TEST_F(NameSearch, AnOverflowOfTheCountFailsTheCreationAndChangesNothing) {
    twins.globals.gInstanceCount = 32767;
    EXPECT_EQ(testing::errorNumber([&] { twins.create(); }), 6);
    EXPECT_EQ(twins.globals.gInstanceCount, 32767);
}

TEST_F(NameSearch, SettingTheInputsOnlyStoresThem) {
    object = twins.create();
    object->LocName("HQ");
    object->OprID(1);
    object->NameSelMode(2);
    EXPECT_FALSE(twins.place.exists());
}

TEST_F(NameSearch, SettingTheGroupLoadsShowsAndBringsForward) {
    object = twins.create();
    twins.takeEvents();
    twins.tables().takeStatements();
    object->LocName("HQ");
    object->OprID(1);
    EXPECT_EQ(set(2), 0);
    EXPECT_EQ(twins.takeEvents(), Events{"SetOperator 1"});
    EXPECT_EQ(twins.tables().takeStatements(),
              (Statements{"PrepareForm frmNameSearch",
                          "SELECT * FROM FormData WHERE FORM = 'ListNAMESEARCH' ORDER BY INDEX",
                          "Select PwProfile From OPR Where ID = 1",
                          "Select AllMenus From PwProfile Where ID = 1"}));
    EXPECT_TRUE(form().isVisible());
    EXPECT_EQ(title(), "HQ:  Search Names");
    const platform::WindowId window = form().winId();
    EXPECT_EQ(twins.windows.placed,
              (std::vector<RecordingWindowRequests::Placed>{{window, topmost, neitherMovedNorSized},
                                                            {window, top, neitherMovedNorSized}}));
}

TEST_F(NameSearch, TheCaptionTakesItsTextByNumber) {
    twins.companion.texts[204] = "Namen suchen";
    open();
    EXPECT_EQ(title(), "HQ:  Namen suchen");
}

TEST_F(NameSearch, AnEqualOperatorIsNotPassedOnAgain) {
    open();
    EXPECT_EQ(set(2), 0);
    EXPECT_TRUE(twins.takeEvents().empty());
    object->OprID(0);
    EXPECT_EQ(set(2), 0);
    EXPECT_EQ(twins.takeEvents(), Events{"SetOperator 0"});
}

TEST_F(NameSearch, AGroupWithoutImageTypeRaisesAfterWhatCameBeforeTookEffect) {
    object = twins.create();
    object->OprID(1);
    twins.takeEvents();
    EXPECT_EQ(set(9), 5);
    EXPECT_EQ(twins.takeEvents(), Events{"SetOperator 1"});
    EXPECT_FALSE(form().isVisible());
    EXPECT_TRUE(twins.windows.placed.empty());
}

TEST_F(NameSearch, SettingTheGroupTwiceKeepsTheResultUntilTheDialogCloses) {
    open();
    search();
    clickRow(2);
    click("cmdOK");
    EXPECT_EQ(set(2), 0);
    EXPECT_EQ(set(2), 0);
    EXPECT_TRUE(form().isVisible());
    EXPECT_TRUE(object->SelNameReady());
    EXPECT_EQ(object->SelNameID(), 20);
    EXPECT_EQ(object->SelName(), "Zorn, Ida");
    click("cmdCancel");
    EXPECT_EQ(object->SelNameID(), 0);
}

TEST_F(NameSearch, CancelYieldsNoNameAndIsReady) {
    open();
    EXPECT_FALSE(object->SelNameReady());
    search();
    click("cmdCancel");
    EXPECT_TRUE(object->SelNameReady());
    EXPECT_EQ(object->SelNameID(), 0);
    EXPECT_EQ(object->SelName(), "");
    EXPECT_FALSE(form().isVisible());
    EXPECT_TRUE(shown().empty());
}

TEST_F(NameSearch, EveryClosingSignalsToEveryCreator) {
    open();
    RecordingSignals others(twins.events, "other ");
    const auto other =
        std::make_unique<search::objNameSearch>(twins.surroundings, twins.place, others);
    twins.takeEvents();
    for (int round = 0; round < 2; ++round) {
        click("cmdCancel");
        EXPECT_EQ(twins.takeEvents(),
                  (Events{"changed SelName", "other changed SelName", "changed SelNameID",
                          "other changed SelNameID", "changed SelNameReady",
                          "other changed SelNameReady"}));
    }
}

TEST_F(NameSearch, EndingOneObjectUnloadsTheWindowOfAll) {
    open();
    auto other = twins.create();
    other.reset();
    EXPECT_FALSE(twins.place.exists());
    EXPECT_EQ(twins.globals.gInstanceCount, 1);
    EXPECT_TRUE(twins.globals.gSys);
}

TEST_F(NameSearch, LoadingAgainMakesTheResultUnreadyAndSaysSo) {
    open();
    click("cmdCancel");
    twins.place.unload();
    twins.takeEvents();
    EXPECT_TRUE(object->SelNameReady());
    object->LocGrp(2, [](const auto&) {});
    EXPECT_FALSE(object->SelNameReady());
    EXPECT_EQ(twins.takeEvents(), (Events{"SetOperator 1", "changed SelNameReady"}));
}

TEST_F(NameSearch, TheSecondWindowRequestIsDroppedWithTheForm) {
    object = twins.create();
    bool answered = false;
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> completion = held;
    object->LocGrp(2, [held = std::move(held), &answered](const auto&) { answered = true; });
    twins.place.unload();
    ASSERT_TRUE(runUntil([&] { return completion.expired(); }));
    EXPECT_FALSE(answered);
    EXPECT_EQ(twins.windows.placed.size(), 1U);
}

TEST_F(NameSearch, PrintRequestsReturnAtOnceAndAreTakenUpByTheTimer) {
    object = twins.create();
    twins.takeEvents();
    std::vector<std::pair<int, int>> printed;
    twins.surroundings.neighbours.print = [&](std::int16_t request, std::int32_t loc, const auto&,
                                              const auto& ended) {
        printed.emplace_back(request, loc);
        ended("");
    };
    object->PrintWhoIsIn(11);
    EXPECT_TRUE(printed.empty());
    EXPECT_FALSE(form().isVisible());
    object->PrintStatus(); // replaces the request that waits
    ASSERT_TRUE(runUntil([&] { return !printed.empty(); }));
    object->PrintWhoIsIn(11);
    ASSERT_TRUE(runUntil([&] { return printed.size() == 2; }));
    EXPECT_EQ(printed, (std::vector<std::pair<int, int>>{{1, 0}, {2, 11}}));
    EXPECT_EQ(twins.takeEvents(), (Events{"PrintEnded 2 'A later request took its place.'",
                                          "PrintEnded 1 ''", "PrintEnded 2 ''"}));
}

TEST_F(NameSearch, TheSameRequestTwiceBeforeTheTickEndsOnce) {
    object = twins.create();
    twins.takeEvents();
    int printed = 0;
    twins.surroundings.neighbours.print = [&](std::int16_t, std::int32_t, const auto&,
                                              const auto& ended) {
        ++printed;
        ended("");
    };
    object->PrintWhoIsIn(11);
    object->PrintWhoIsIn(11);
    ASSERT_TRUE(runUntil([&] { return printed != 0; }));
    runPending();
    EXPECT_EQ(printed, 1);
    EXPECT_EQ(twins.takeEvents(), Events{"PrintEnded 2 ''"});
}

TEST_F(NameSearch, TheEndOfARequestIsToldToTheCreatorOfEveryObject) {
    object = twins.create();
    RecordingSignals others(twins.events, "other ");
    const auto other =
        std::make_unique<search::objNameSearch>(twins.surroundings, twins.place, others);
    twins.takeEvents();
    other->PrintStatus();
    ASSERT_TRUE(runUntil([&] { return twins.events.size() == 2; }));
    EXPECT_EQ(twins.takeEvents(),
              (Events{"PrintEnded 1 'Printing is not part of this program.'",
                      "other PrintEnded 1 'Printing is not part of this program.'"}));
}

TEST_F(NameSearch, ARequestThatArrivesWhilePrintingWaitsItsTurn) {
    object = twins.create();
    twins.takeEvents();
    std::vector<std::function<void(const std::string&)>> running;
    twins.surroundings.neighbours.print = [&](std::int16_t, std::int32_t, const auto&,
                                              const auto& ended) { running.push_back(ended); };
    object->PrintStatus();
    ASSERT_TRUE(runUntil([&] { return running.size() == 1; }));
    object->PrintWhoIsIn(11);
    runPending();
    EXPECT_EQ(running.size(), 1U);
    running.front()("no paper");
    ASSERT_TRUE(runUntil([&] { return running.size() == 2; }));
    EXPECT_EQ(twins.takeEvents(), Events{"PrintEnded 1 'no paper'"});
}

TEST_F(NameSearch, AProgramWithoutReportsSaysThatItDoesNotPrint) {
    object = twins.create();
    twins.takeEvents();
    object->PrintStatus();
    ASSERT_TRUE(runUntil([&] { return !twins.events.empty(); }));
    EXPECT_EQ(twins.takeEvents(), Events{"PrintEnded 1 'Printing is not part of this program.'"});
}

TEST_F(NameSearch, ARequestThatIsDroppedWithTheFormHasEnded) {
    object = twins.create();
    twins.takeEvents();
    object->PrintStatus();
    twins.place.unload();
    EXPECT_EQ(twins.takeEvents(),
              Events{"PrintEnded 1 'The name search was closed before printing began.'"});
}

TEST_F(NameSearch, APrintRequestMakesTheResultUnreadyByLoading) {
    open();
    click("cmdCancel");
    twins.place.unload();
    object->PrintStatus();
    EXPECT_FALSE(object->SelNameReady());
}

TEST(NameSearchClass, HasItsMembersInSlotOrder) {
    NameSearchTwins twins;
    const PublicClass described = search::objNameSearch::describe(twins.surroundings, twins.place);
    std::vector<std::string> names;
    for (const Member& member : described.members) {
        names.push_back(member.name);
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"LocGrp", "LocName", "OprID", "NameSelMode", "SelNameID",
                                        "SelName", "SelNameReady", "PrintStatus", "PrintWhoIsIn"}));
    EXPECT_EQ(described.members[0].type, ValueType::Int32);
    EXPECT_EQ(described.members[3].type, ValueType::Int16);
    EXPECT_EQ(described.members[6].type, ValueType::Boolean);
    EXPECT_TRUE(described.members[6].signalsChange);
    ASSERT_EQ(described.signals.size(), 1U);
    EXPECT_EQ(described.signals[0].name, "PrintEnded");
}

} // namespace
} // namespace kintar::testing
