#include "search/UdfList.h"

#include "search/TableTwin.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using testing::null;
using testing::Row;
using testing::TwinDatabase;
using Statements = std::vector<std::string>;

const std::string namesStatement =
    "SELECT UdfNum, Name, Hidden FROM UdfName WHERE LocGrp = 2 Order By UdfNum";
const std::string valuesStatement =
    "SELECT UdfNum, UdfText FROM UDF WHERE NameID = 30 Order By UdfNum";

class UdfList : public ::testing::Test {
protected:
    UdfList() {
        twin.record.answer(namesStatement, {"UdfNum", "Name", "Hidden:b"},
                           {Row{1, "Car", 0}, Row{2, "Salary", -1}, Row{4, "Phone", null},
                            Row{5, "Home page", 0}});
        twin.record.answer(valuesStatement, {"UdfNum", "UdfText"},
                           {Row{1, "blue"}, Row{2, "secret"}, Row{3, "no field"}, Row{4, null}});
    }

    TwinDatabase twin;
};

TEST_F(UdfList, ListsAHiddenFieldByNameAndWithholdsItsValue) {
    const auto rows = readUdfRows(twin.database, 2, 30, false);
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[0].name, "Car");
    EXPECT_EQ(rows[0].value, "blue");
    EXPECT_FALSE(rows[0].withheld);
    EXPECT_EQ(rows[1].name, "Salary");
    EXPECT_EQ(rows[1].value, "");
    EXPECT_TRUE(rows[1].withheld);
}

TEST_F(UdfList, ShowsHiddenValuesToThoseWhoMay) {
    const auto rows = readUdfRows(twin.database, 2, 30, true);
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[1].value, "secret");
    EXPECT_FALSE(rows[1].withheld);
}

TEST_F(UdfList, ShowsNullAndMissingValuesAsEmptyCells) {
    const auto rows = readUdfRows(twin.database, 2, 30, false);
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[2].value, "");
    EXPECT_EQ(rows[3].value, "");
    EXPECT_FALSE(rows[3].withheld);
}

TEST_F(UdfList, WithholdsAValueWhoseMarkCannotBeRead) {
    twin.record.answer(namesStatement, {"UdfNum", "Name", "Hidden"}, {Row{1, "Car", "perhaps"}});
    const auto rows = readUdfRows(twin.database, 2, 30, false);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_TRUE(rows[0].withheld);
    EXPECT_EQ(rows[0].value, "");
}

TEST_F(UdfList, KeysRowsByTheirNumberAndSearchesEachAmongTheValues) {
    const auto rows = readUdfRows(twin.database, 2, 30, false);
    EXPECT_EQ(rows.back().key, "5");
    EXPECT_EQ(twin.record.takeStatements(),
              (Statements{namesStatement, valuesStatement, "find UdfNum = 1", "find UdfNum = 2",
                          "find UdfNum = 4", "find UdfNum = 5"}));
}

TEST_F(UdfList, OfANameWithoutValuesHasEmptyCells) {
    twin.record.answer(valuesStatement, {"UdfNum", "UdfText"}, {});
    for (const UdfRow& row : readUdfRows(twin.database, 2, 30, true)) {
        EXPECT_EQ(row.value, "") << row.name;
    }
}

} // namespace
} // namespace kintar::search
