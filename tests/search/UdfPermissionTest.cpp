#include "search/UdfPermission.h"

#include "search/TableTwin.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using testing::null;
using testing::Row;
using testing::TwinDatabase;
using Statements = std::vector<std::string>;

const std::string operatorStatement = "Select PwProfile From OPR Where ID = 7";
const std::string profileStatement = "Select AllMenus From PwProfile Where ID = 3";
const std::string locationStatement = "Select Loc From Loc Where LocGrp = 2";
const std::string menuStatement = "Select [View] From MenuProfile Where PwProfileID = 3 AND MenuID "
                                  " = 1061 AND Loc IN (0,4,9)";

/// Operator 7 with profile 3, without all menus; group 2 has the locations 4 and 9.
class UdfPermission : public ::testing::Test {
protected:
    UdfPermission() {
        twin.record.answer(operatorStatement, {"PwProfile"}, {Row{3}});
        twin.record.answer(profileStatement, {"AllMenus:b"}, {Row{0}});
        twin.record.answer(locationStatement, {"Loc"}, {Row{4}, Row{9}});
        twin.record.answer(menuStatement, {"View:b"}, {});
    }

    [[nodiscard]] bool canView() const { return CanViewUDF(twin.database, 7, 2); }

    TwinDatabase twin;
};

TEST_F(UdfPermission, AnOperatorWithoutARowMayNot) {
    twin.record.answer(operatorStatement, {"PwProfile"}, {});
    EXPECT_FALSE(canView());
    EXPECT_EQ(twin.record.takeStatements(), Statements{operatorStatement});
}

TEST_F(UdfPermission, AnOperatorWithoutAProfileMayNot) {
    twin.record.answer(profileStatement, {"AllMenus:b"}, {});
    EXPECT_FALSE(canView());
    EXPECT_EQ(twin.record.takeStatements(), (Statements{operatorStatement, profileStatement}));
}

TEST_F(UdfPermission, AllMenusGrantsWithoutAMenuProfileRow) {
    twin.record.answer(profileStatement, {"AllMenus:b"}, {Row{-1}});
    EXPECT_TRUE(canView());
    EXPECT_EQ(twin.record.takeStatements(), (Statements{operatorStatement, profileStatement}));
}

TEST_F(UdfPermission, ANullInAllMenusCountsAsFalse) {
    twin.record.answer(profileStatement, {"AllMenus:b"}, {Row{null}});
    EXPECT_FALSE(canView());
}

TEST_F(UdfPermission, AsksForLocationZeroAndThoseOfTheGroup) {
    EXPECT_FALSE(canView());
    EXPECT_EQ(twin.record.takeStatements(),
              (Statements{operatorStatement, profileStatement, locationStatement, menuStatement}));
}

TEST_F(UdfPermission, AProfileRowForLocationZeroGrantsInEveryGroup) {
    twin.record.answer(locationStatement, {"Loc"}, {});
    twin.record.answer("Select [View] From MenuProfile Where PwProfileID = 3 AND MenuID  = 1061 "
                       "AND Loc IN (0)",
                       {"View:b"}, {Row{-1}});
    EXPECT_TRUE(canView());
}

TEST_F(UdfPermission, SkipsNullAndFalseRowsUpToTheFirstTrueOne) {
    twin.record.answer(menuStatement, {"View:b"}, {Row{null}, Row{0}, Row{-1}, Row{0}});
    EXPECT_TRUE(canView());
    twin.record.answer(menuStatement, {"View:b"}, {Row{null}, Row{0}});
    EXPECT_FALSE(canView());
}

TEST_F(UdfPermission, AProfileThatIsNoNumberReachesNoStatement) {
    twin.record.answer(operatorStatement, {"PwProfile"}, {Row{"3 OR 1=1"}});
    EXPECT_THROW((void)canView(), RunTimeError);
    EXPECT_EQ(twin.record.takeStatements(), Statements{operatorStatement});
}

} // namespace
} // namespace kintar::search
