#include "search/DefaultImageTypes.h"

#include "base/RunTimeError.h"
#include "search/TableTwin.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using testing::Row;
using testing::TwinDatabase;

const std::string typeStatement = "SELECT LocGrp, Num FROM ImageType WHERE DefaultImage <> 0";

TEST(DefaultImageTypes, AreFoundByLocationGroup) {
    TwinDatabase twin;
    twin.record.answer(typeStatement, {"LocGrp", "Num"}, {Row{1, 4}, Row{12, 2}, Row{-3, 7}});
    DefaultImageTypes types;
    types.LoadDefaultImageTypes(twin.database);
    EXPECT_EQ(types.of(1), 4);
    EXPECT_EQ(types.of(12), 2);
    EXPECT_EQ(types.of(-3), 7);
    EXPECT_EQ(twin.record.takeStatements(), std::vector<std::string>{typeStatement});
}

TEST(DefaultImageTypes, AGroupWithoutOneIsAnInvalidKey) {
    try {
        (void)DefaultImageTypes().of(1);
        FAIL();
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number(), 5);
    }
}

TEST(DefaultImageTypes, ASecondOneOfAGroupIsADuplicateKey) {
    TwinDatabase twin;
    twin.record.answer(typeStatement, {"LocGrp", "Num"}, {Row{1, 4}, Row{1, 5}});
    DefaultImageTypes types;
    try {
        types.LoadDefaultImageTypes(twin.database);
        FAIL();
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number(), 457);
    }
}

TEST(DefaultImageTypes, AFailingDatabaseIsRaised) {
    TwinDatabase twin;
    DefaultImageTypes types;
    EXPECT_THROW(types.LoadDefaultImageTypes(twin.database), RunTimeError);
}

} // namespace
} // namespace kintar::search
