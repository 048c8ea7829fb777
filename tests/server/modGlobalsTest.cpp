#include "server/modGlobals.h"

#include "support/FakeServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace kintar {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::Events;
using testing::FakePlace;
using testing::FakeServer;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

const Events wholeStartUp = {"SqlText ''",         "new TarnSys",        "SetVersion 4.4.12",
                             "Create /app True",   "open setup",         "open data",
                             "make /tmp//TarnTmp", "empty /tmp/TarnTmp", "help /app/AcsHelp.chm"};

TEST(StartUp, RunsItsStepsInOrderForTheFirstObject) {
    FakeServer server;
    server.globals.addInstance();
    EXPECT_EQ(server.events, wholeStartUp);
    EXPECT_EQ(server.globals.gInstanceCount, 1);
    EXPECT_EQ(server.globals.gSysPath, "/app");
    EXPECT_EQ(server.globals.gTempPath, "/tmp/TarnTmp");
    EXPECT_TRUE(server.globals.gCnn().isOpen());
    EXPECT_TRUE(server.globals.gCnn2().isOpen());
}

TEST(StartUp, IsSkippedForFurtherObjectsButTheHelpFileIsSetAgain) {
    FakeServer server;
    server.globals.addInstance();
    server.takeEvents();
    server.globals.addInstance();
    EXPECT_THAT(server.events, ElementsAre("help /app/AcsHelp.chm"));
    EXPECT_EQ(server.globals.gInstanceCount, 2);
}

TEST(StartUp, RunsOnceForTwoObjectsAndConnectionsCloseWithTheSecond) {
    FakeServer server;
    server.globals.addInstance();
    server.globals.addInstance();
    server.globals.removeInstance();
    EXPECT_TRUE(server.globals.gCnn().isOpen());
    EXPECT_TRUE(server.globals.gCnn2().isOpen());
    server.takeEvents();
    server.globals.removeInstance();
    EXPECT_THAT(server.events, ElementsAre("close data", "close setup", "release TarnSys"));
    EXPECT_FALSE(server.globals.gCnn().isOpen());
}

TEST(StartUp, RunsAgainWhenTheCountComesBackToOne) {
    FakeServer server;
    server.globals.addInstance();
    server.globals.removeInstance();
    server.takeEvents();
    server.globals.addInstance();
    EXPECT_EQ(server.events, wholeStartUp);
}

TEST(StartUp, SaysWhichOfItsStepsFailedAndEndsThere) {
    const struct {
        bool testing::Faults::*fault;
        const char* message;
        bool systemSet;
    } cases[] = {
        {&testing::Faults::record, "box Problem Instancing TarnRec Object", false},
        {&testing::Faults::sqlText, "box Problem Instancing TarnRec Object", false},
        {&testing::Faults::system, "box Problem Instancing TarnSys Object", false},
        {&testing::Faults::setVersion, "box Problem Instancing TarnSys Object", true},
        {&testing::Faults::create, "box TarnSys Create Routine Failed", true},
    };
    for (const auto& item : cases) {
        FakeServer server;
        server.companion.faults.*item.fault = true;
        server.globals.addInstance();
        ASSERT_FALSE(server.events.empty());
        EXPECT_EQ(server.events.back(), item.message);
        EXPECT_EQ(server.globals.gSys != nullptr, item.systemSet) << item.message;
        EXPECT_FALSE(server.globals.gCnn().isOpen());
        EXPECT_THAT(server.application.helpFile(), IsEmpty());
        EXPECT_EQ(server.globals.gInstanceCount, 1) << "the object lives all the same";
    }
}

TEST(StartUp, EndsWithoutAMessageWhereConnectionsFail) {
    FakeServer server;
    server.companion.faults.connections = true;
    server.globals.addInstance();
    EXPECT_EQ(server.events.back(), "Create /app True");
    EXPECT_THAT(server.application.helpFile(), IsEmpty());
    EXPECT_THAT(server.globals.gTempPath, IsEmpty());
}

TEST(StartUp, RaisesOverflowOfTheCountAndDoesNotRun) {
    FakeServer server;
    server.globals.gInstanceCount = std::numeric_limits<std::int16_t>::max();
    try {
        server.globals.addInstance();
        FAIL() << "no error";
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.clientText(), "Run-time error '6': Overflow");
    }
    EXPECT_EQ(server.globals.gInstanceCount, std::numeric_limits<std::int16_t>::max());
    EXPECT_THAT(server.events, IsEmpty());
}

TEST(Connections, ReadWhileUnsetAreClosedOnesNotNone) {
    FakeServer server;
    EXPECT_FALSE(server.globals.gCnn().isOpen());
    EXPECT_FALSE(server.globals.gCnn2().isOpen());
    server.globals.gCnn().Close();
}

TEST(ShutDown, UnloadsAllSevenFormsInOrderEachTime) {
    FakeServer server;
    FakePlace photo("frmKintar", server.events);
    FakePlace search("frmNameSearch", server.events);
    FakePlace alarm("frmAlarmPopUp", server.events);
    FakePlace schedule("frmOvrSchedule", server.events);
    FakePlace selection("frmSelName", server.events);
    FakePlace board("frmInOut", server.events);
    FakePlace print("frmPrnRpt", server.events);
    server.globals.forms.place(FormId::frmKintar, photo);
    server.globals.forms.place(FormId::frmNameSearch, search);
    server.globals.forms.place(FormId::frmAlarmPopUp, alarm);
    server.globals.forms.place(FormId::frmOvrSchedule, schedule);
    server.globals.forms.place(FormId::frmSelName, selection);
    server.globals.forms.place(FormId::frmInOut, board);
    server.globals.forms.place(FormId::frmPrnRpt, print);
    server.globals.addInstance();
    server.globals.addInstance();
    for (int round = 0; round < 2; ++round) {
        server.takeEvents();
        server.globals.removeInstance();
        Events unloads = server.events;
        unloads.resize(formCount);
        EXPECT_THAT(unloads,
                    ElementsAre("unload frmAlarmPopUp", "unload frmKintar", "unload frmInOut",
                                "unload frmNameSearch", "unload frmOvrSchedule", "unload frmPrnRpt",
                                "unload frmSelName"));
    }
}

TEST(ShutDown, KeepsThePaths) {
    FakeServer server;
    server.globals.addInstance();
    server.globals.removeInstance();
    EXPECT_EQ(server.globals.gSysPath, "/app");
    EXPECT_EQ(server.globals.gTempPath, "/tmp/TarnTmp");
    EXPECT_EQ(server.globals.gSys, nullptr);
}

TEST(TemporaryFolder, FallsBackToASiblingOfTheApplicationFolderWithoutASystemOne) {
    FakeServer server;
    server.temporaryFolders.system = "";
    server.globals.CleanTempFolder();
    EXPECT_THAT(server.events, ElementsAre("make /app/TarnTmp", "empty /appTarnTmp"));
    EXPECT_EQ(server.globals.gTempPath, "/appTarnTmp");
}

TEST(TemporaryFolder, AnAnswerOf512CharactersIsNoAnswer) {
    FakeServer server;
    server.temporaryFolders.system = "/" + std::string(510, 'x') + "/";
    server.globals.CleanTempFolder();
    EXPECT_EQ(server.globals.gTempPath, "/appTarnTmp");
    FakeServer second;
    second.temporaryFolders.system = "/" + std::string(509, 'x') + "/";
    second.globals.CleanTempFolder();
    EXPECT_EQ(second.globals.gTempPath, second.temporaryFolders.system + "TarnTmp");
}

TEST(TemporaryFolder, EndsAtTheFirstZeroCharacterOfTheAnswer) {
    FakeServer server;
    server.temporaryFolders.system = std::string("/tmp/\0rest", 10);
    server.globals.CleanTempFolder();
    EXPECT_EQ(server.globals.gTempPath, "/tmp/TarnTmp");
}

TEST(TemporaryFolder, ThatIsSomebodyElsesIsReportedAndNothingIsEmptied) {
    FakeServer server;
    server.temporaryFolders.refuse = true;
    server.globals.addInstance();
    EXPECT_THAT(
        server.events,
        Contains("ReportError 440 not the user's own folder\r\nmodGlobals/CleanTempFolder 2"));
    EXPECT_THAT(server.events, Not(Contains(HasSubstr("empty"))));
    EXPECT_THAT(server.globals.gTempPath, IsEmpty());
    EXPECT_TRUE(server.globals.gCnn().isOpen()) << "the connections came before";
    EXPECT_THAT(server.application.helpFile(), IsEmpty());
}

} // namespace
} // namespace kintar
