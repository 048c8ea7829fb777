#include "server/objSysPath.h"

#include "support/FakeServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace kintar {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::FakePlace;
using testing::FakeServer;
using ::testing::Not;

TEST(objSysPath, SetBeforeAnyOtherObjectDecidesThePathOfTheStartUp) {
    FakeServer server;
    objSysPath path(server.globals);
    path.SysPath("/sites/north");
    EXPECT_THAT(server.events, Contains("Create /sites/north True"));
    EXPECT_EQ(server.globals.gInstanceCount, 1);
}

TEST(objSysPath, SetWhileAnotherObjectLivesStoresThePathOnly) {
    FakeServer server;
    server.globals.addInstance();
    server.takeEvents();
    objSysPath path(server.globals);
    path.SysPath("/sites/north");
    EXPECT_THAT(server.events, ElementsAre("help /app/AcsHelp.chm"));
    EXPECT_EQ(server.globals.gSysPath, "/sites/north");
    EXPECT_EQ(server.globals.gInstanceCount, 2);
}

TEST(objSysPath, CountsOnceForEachAssignmentAndDownOnceAtItsEnd) {
    FakeServer server;
    {
        objSysPath path(server.globals);
        path.SysPath("/a");
        path.SysPath("/b");
        EXPECT_EQ(server.globals.gInstanceCount, 2);
    }
    EXPECT_EQ(server.globals.gInstanceCount, 1);
    EXPECT_TRUE(server.globals.gCnn().isOpen());
}

TEST(objSysPath, ReleasedWithoutBeingSetCountsBelowZeroAndTheNextStartUpIsSkipped) {
    FakeServer server;
    { const objSysPath path(server.globals); }
    EXPECT_EQ(server.globals.gInstanceCount, -1);
    server.takeEvents();
    server.globals.addInstance();
    EXPECT_EQ(server.globals.gInstanceCount, 0);
    EXPECT_THAT(server.events, ElementsAre("help /app/AcsHelp.chm"));
    server.globals.addInstance();
    EXPECT_THAT(server.events, Contains("new TarnSys"));
}

TEST(objSysPath, UnloadsThePrintFormBeforeItCountsDown) {
    FakeServer server;
    FakePlace print("frmPrnRpt", server.events);
    server.globals.forms.place(FormId::frmPrnRpt, print);
    { const objSysPath path(server.globals); }
    EXPECT_EQ(server.events.front(), "unload frmPrnRpt");
    EXPECT_EQ(std::ranges::count(server.events, "unload frmPrnRpt"), 2) << "shut-down follows";
}

TEST(objSysPath, RaisesOverflowOfTheCountToItsClient) {
    FakeServer server;
    server.globals.gInstanceCount = std::numeric_limits<std::int16_t>::max();
    objSysPath path(server.globals);
    EXPECT_THROW(path.SysPath("/a"), RunTimeError);
    EXPECT_EQ(server.globals.gSysPath, "/a") << "stored before the count";
    EXPECT_THAT(server.events, Not(Contains("new TarnSys")));
}

TEST(objSysPath, IsDescribedWithItsOneMember) {
    FakeServer server;
    const PublicClass described = objSysPath::describe(server.globals);
    ASSERT_EQ(described.members.size(), 1U);
    EXPECT_EQ(described.members[0].name, "SysPath");
    EXPECT_EQ(described.members[0].kind, MemberKind::WriteOnly);
    EXPECT_EQ(described.members[0].type, ValueType::String);
}

} // namespace
} // namespace kintar
