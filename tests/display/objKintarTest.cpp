#include "display/objKintar.h"

#include "display/DisplayWorld.h"
#include "display/objImageType.h"
#include "support/ErrorNumber.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace kintar {
namespace {

using testing::DisplayWorld;
using testing::runPending;

class objKintarTest : public ::testing::Test {
protected:
    DisplayWorld world;
};

TEST_F(objKintarTest, JoinsTheSharedLifetimeAndShowsItsWindow) {
    {
        const objKintar object(world.display);
        EXPECT_EQ(world.globals.gInstanceCount, 1);
        EXPECT_TRUE(world.globals.gPhotoReady);
        EXPECT_TRUE(world.form().isVisible());
    }
    EXPECT_EQ(world.globals.gInstanceCount, 0);
    EXPECT_FALSE(world.display.kintar().exists());
    EXPECT_EQ(world.globals.gSys, nullptr);
}

TEST_F(objKintarTest, ClosesTheWindowOfBothWhenOneOfTwoEnds) {
    objKintar first(world.display);
    { const objKintar second(world.display); }
    EXPECT_EQ(world.globals.gInstanceCount, 1);
    EXPECT_FALSE(world.display.kintar().exists());
    EXPECT_TRUE(world.globals.gCnn().isOpen());
    world.smith(first);
    ASSERT_TRUE(world.displayed());
    EXPECT_TRUE(world.form().isVisible());
}

TEST_F(objKintarTest, RaisesAnOverflowOfTheCount) {
    world.globals.gInstanceCount = std::numeric_limits<std::int16_t>::max();
    EXPECT_EQ(testing::errorNumber([&] { const objKintar object(world.display); }), 6);
    EXPECT_EQ(world.globals.gInstanceCount, std::numeric_limits<std::int16_t>::max());
    EXPECT_FALSE(world.display.kintar().exists());
    world.globals.gInstanceCount = 0;
}

TEST_F(objKintarTest, DropsAnEventWhileTheWindowTakesOthers) {
    objKintar object(world.display);
    world.globals.gPhotoReady = false;
    world.smith(object);
    runPending();
    EXPECT_EQ(world.form().windowTitle(), QStringLiteral("Photo"));
    EXPECT_TRUE(world.windows.placed.empty());
}

TEST_F(objKintarTest, KeepsItsTimeWhereANewOneCannotBeRead) {
    objKintar object(world.display);
    object.DateTime("3/14/2012 5:05:00 PM");
    for (const char* text : {"", "soon", "14.03.2012", "3/14/12 5:05:00 PM", "25:00", "5:05 XM"}) {
        EXPECT_EQ(testing::errorNumber([&] { object.DateTime(text); }), 13) << text;
    }
    object.ID(12);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(world.text("Label_1"), "5:05:00 PM  ");
}

TEST_F(objKintarTest, ShowsMidnightForADateAlone) {
    objKintar object(world.display);
    object.DateTime("3/14/2012");
    object.ID(12);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(world.text("Label_1"), "12:00:00 AM  ");
}

TEST_F(objKintarTest, LeavesTheTimeEmptyWhereNoneWasSet) {
    objKintar object(world.display);
    object.ID(12);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(world.text("Label_1"), "  ");
    EXPECT_EQ(world.form().windowTitle(), QStringLiteral(", "));
}

TEST_F(objKintarTest, HasItsMembersInSlotOrderAllToBeWrittenOnly) {
    const PublicClass described = objKintar::describe(world.display);
    EXPECT_EQ(described.name, "objKintar");
    std::string names;
    for (const Member& member : described.members) {
        names += member.name + " ";
        EXPECT_EQ(member.kind, MemberKind::WriteOnly) << member.name;
    }
    EXPECT_EQ(names, "ID LocGrp LocName FName LName Device EventDesc DateTime Code OprID ");
    EXPECT_EQ(described.members[0].type, ValueType::Int32);
    EXPECT_EQ(described.members[7].type, ValueType::String);
}

TEST_F(objKintarTest, HasACompanionClassWithoutMembersThatDoesNotCount) {
    const PublicClass described = objImageType::describe();
    EXPECT_EQ(described.name, "objImageType");
    EXPECT_TRUE(described.members.empty());
    struct NoSignals final : ObjectSignals {
        void changed(std::string_view /*member*/) override {}
    } signals_;
    EXPECT_NE(described.create(signals_), nullptr);
    EXPECT_EQ(world.globals.gInstanceCount, 0);
}

} // namespace
} // namespace kintar
