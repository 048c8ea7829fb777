#include "display/ImageTypes.h"

#include "display/DisplayWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar {
namespace {

using ::testing::ElementsAre;
using testing::TwinRecord;

class ImageTypesTest : public ::testing::Test {
protected:
    void build() { types.build(record, connection); }

    TwinRecord record;
    testing::OpenConnection connection;
    ImageTypes types;
};

TEST_F(ImageTypesTest, HoldsTheDefaultTypeOfEachGroupAndZeroWhereItHasNone) {
    record.groups = {1, 3};
    record.types = {{3, 2}};
    build();
    EXPECT_EQ(types.of(1), 0);
    EXPECT_EQ(types.of(3), 2);
    EXPECT_THAT(record.criteria, ElementsAre("LocGrp = 1", "LocGrp = 3"));
}

TEST_F(ImageTypesTest, TakesTheFirstOfSeveralDefaultTypes) {
    record.types = {{3, 7}, {3, 2}};
    build();
    EXPECT_EQ(types.of(3), 7);
}

TEST_F(ImageTypesTest, RaisesAnErrorForAGroupThatIsMissing) {
    build();
    EXPECT_THROW(static_cast<void>(types.of(99)), RunTimeError);
}

TEST_F(ImageTypesTest, HasNoEntriesWhereTheDatabaseFails) {
    record.failing = true;
    build();
    EXPECT_EQ(types.count(), 0U);
}

TEST_F(ImageTypesTest, KeepsTheFirstOfTwoGroupsWithOneNumber) {
    record.groups = {3, 3};
    build();
    EXPECT_EQ(types.count(), 1U);
    EXPECT_EQ(types.of(3), 2);
}

TEST_F(ImageTypesTest, TakesATypeBeyond16BitsAsZero) {
    record.types = {{3, 40000}};
    build();
    EXPECT_EQ(types.of(3), 0);
}

} // namespace
} // namespace kintar
