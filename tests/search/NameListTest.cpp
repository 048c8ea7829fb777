#include "search/NameList.h"

#include "base/RunTimeError.h"
#include "search/TableTwin.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using testing::null;
using testing::recordset;
using testing::Row;

const std::vector<std::string> nameColumns{"ID", "Name", "Visitor:b", "Trace:b", "COMPNAME"};

Recordset threeNames() {
    return recordset(nameColumns,
                     {Row{30, "Moss, Kate", 0, -1, "Brick & Co"}, Row{10, "abel, Tom", -1, 0, null},
                      Row{20, "Zorn, Ida", null, null, "acme"}});
}

std::vector<std::string> shownTexts(const NameList& list, std::size_t column) {
    std::vector<std::string> texts;
    for (std::size_t row = 0; row < list.count(); ++row) {
        texts.push_back(list.value(row, column).text());
    }
    return texts;
}

using Texts = std::vector<std::string>;

TEST(NameList, ShowsTheSecondColumnAsTextAndTheOthersAsSubItems) {
    NameList list;
    list.fill(threeNames());
    EXPECT_EQ(shownTexts(list, 0), (Texts{"Moss, Kate", "abel, Tom", "Zorn, Ida"}));
    EXPECT_EQ(shownTexts(list, 1), (Texts{"False", "True", ""}));
    EXPECT_EQ(shownTexts(list, 2), (Texts{"True", "False", ""}));
    EXPECT_EQ(shownTexts(list, 3), (Texts{"Brick & Co", "", "acme"}));
    EXPECT_EQ(shownTexts(list, 4), (Texts{"", "", ""}));
}

TEST(NameList, KeysItemsByTheirNumberAndTagsThemWithTheThirdColumn) {
    NameList list;
    list.fill(threeNames());
    EXPECT_EQ(list.item(0).key, "30ID");
    EXPECT_EQ(list.item(0).tag, "False");
    EXPECT_EQ(list.item(1).tag, "True");
    EXPECT_EQ(list.item(2).tag, "");
}

TEST(NameList, MakesTheFirstItemTheCurrentOne) {
    NameList list;
    EXPECT_FALSE(list.hasCurrent());
    list.fill(threeNames());
    EXPECT_EQ(list.currentItem().text, "Moss, Kate");
    list.fill(recordset(nameColumns, {}));
    EXPECT_FALSE(list.hasCurrent());
    EXPECT_EQ(list.count(), 0U);
}

TEST(NameList, HasNoCurrentItemOnceCleared) {
    NameList list;
    list.fill(threeNames());
    list.clear();
    EXPECT_EQ(list.count(), 0U);
    try {
        (void)list.currentItem();
        FAIL();
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number(), 91);
    }
}

TEST(NameList, SortingTheSameColumnTwiceKeepsTheAscendingOrder) {
    NameList list;
    list.fill(threeNames());
    list.sortBy(0);
    const Texts ascending{"abel, Tom", "Moss, Kate", "Zorn, Ida"};
    EXPECT_EQ(shownTexts(list, 0), ascending);
    list.sortBy(0);
    EXPECT_EQ(shownTexts(list, 0), ascending);
}

TEST(NameList, KeepsTheCurrentItemWhenSorted) {
    NameList list;
    list.fill(threeNames());
    list.setCurrent(2);
    list.sortBy(3); // empty, acme, Brick & Co
    EXPECT_EQ(list.currentItem().text, "Zorn, Ida");
    EXPECT_EQ(list.currentRow(), 1U);
    EXPECT_EQ(shownTexts(list, 3), (Texts{"", "acme", "Brick & Co"}));
    EXPECT_EQ(list.item(1).key, "20ID");
}

TEST(NameList, SortingStaysOnForLaterFills) {
    NameList list;
    list.sortBy(0);
    list.fill(threeNames());
    EXPECT_EQ(shownTexts(list, 0), (Texts{"abel, Tom", "Moss, Kate", "Zorn, Ida"}));
    EXPECT_EQ(list.currentItem().text, "abel, Tom");
    list.clear();
    EXPECT_EQ(list.sortColumn(), 0U);
}

TEST(NameList, SortsByAColumnThatTheStatementDoesNotHave) {
    NameList list;
    list.fill(threeNames());
    list.sortBy(7);
    EXPECT_EQ(shownTexts(list, 0), (Texts{"Moss, Kate", "abel, Tom", "Zorn, Ida"}));
}

TEST(NameList, TakesAnyStatementWithANumberAndAName) {
    NameList list;
    list.fill(recordset({"ID", "Anything"}, {Row{5, "Only a name"}}));
    EXPECT_EQ(list.item(0).text, "Only a name");
    EXPECT_EQ(list.item(0).tag, "");
    EXPECT_TRUE(list.value(0, 1).isNull());
}

int errorOf(NameList& list, Recordset rows) {
    try {
        list.fill(std::move(rows));
    } catch (const RunTimeError& error) {
        return error.number();
    }
    return 0;
}

TEST(NameList, RefusesASecondRowWithOneNumberAndIsEmptyThen) {
    NameList list;
    list.fill(threeNames());
    EXPECT_EQ(errorOf(list, recordset({"ID", "Name"}, {Row{9, "a"}, Row{8, "b"}, Row{9, "c"}})),
              457);
    EXPECT_EQ(list.count(), 0U);
    EXPECT_FALSE(list.hasCurrent());
    EXPECT_EQ(errorOf(list, recordset({"ID", "Name"}, {Row{null, "a"}, Row{null, "b"}})), 457);
}

TEST(NameList, RefusesAStatementWithoutANumberOrAName) {
    NameList list;
    EXPECT_EQ(errorOf(list, recordset({"Number", "Name"}, {Row{1, "a"}})), 3265);
    EXPECT_EQ(errorOf(list, recordset({"ID"}, {Row{1}})), 3265);
}

} // namespace
} // namespace kintar::search
