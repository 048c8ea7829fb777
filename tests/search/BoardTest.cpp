#include "search/Board.h"

#include "support/ErrorNumber.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::board {
namespace {

using ::testing::ElementsAre;

std::vector<std::string> shown(const Board& board) {
    std::vector<std::string> texts;
    for (std::size_t row = 0; row < board.size(); ++row) {
        const Board::Item& item = board.item(board.itemAt(row));
        texts.push_back(sortText(item.icon, item.name));
    }
    return texts;
}

Board filled(const std::vector<std::string>& names) {
    Board board;
    std::int32_t id = 100;
    for (const std::string& name : names) {
        board.add(id++, name);
    }
    board.finishFilling();
    return board;
}

TEST(BoardOrder, ThoseWhoAreInComeFirstEachGroupByNameWithoutRegardToCase) {
    Board board = filled({"Zed, A", "adams, B", "Moss, C", "Öst, D", "Baker, E"});
    board.setIcon(0, Icon::In);
    board.setIcon(1, Icon::Out);
    board.setIcon(2, Icon::In);
    board.setIcon(3, Icon::Out);
    board.setIcon(4, Icon::Out);
    EXPECT_TRUE(board.sort());
    EXPECT_THAT(shown(board),
                ElementsAre("1Moss, C", "1Zed, A", "2adams, B", "2Baker, E", "2Öst, D"));
    for (std::size_t row = 0; row < board.size(); ++row) {
        EXPECT_EQ(board.rowOf(board.itemAt(row)), row);
    }
    EXPECT_FALSE(board.sort());
}

TEST(BoardOrder, HoldersWithoutAnActiveCardStandAmongThoseWhoAreOut) {
    Board board = filled({"Ash, A", "Birch, B", "Cedar, C"});
    board.setIcon(0, Icon::Out);
    board.setIcon(1, stateOf(std::nullopt).icon);
    board.setIcon(2, Icon::Out);
    board.sort();
    EXPECT_THAT(shown(board), ElementsAre("2Ash, A", "2Birch, B", "2Cedar, C"));
}

TEST(BoardOrder, EqualNamesStandInTheOrderInWhichTheyCame) {
    const Board board = filled({"Same, A", "Same, A"});
    EXPECT_EQ(board.itemAt(0), 0U);
    EXPECT_EQ(board.itemAt(1), 1U);
}

TEST(BoardFilling, ASecondItemWithTheSameIdRaises457AndKeepsTheFirst) {
    Board board;
    board.add(5, "Ash, A");
    EXPECT_EQ(testing::errorNumber([&] { board.add(5, "Birch, B"); }), 457);
    board.finishFilling();
    EXPECT_EQ(board.size(), 1U);
}

TEST(BoardFilling, ClearingForgetsNamesAndCounts) {
    Board board = filled({"Ash, A"});
    board.setIcon(0, Icon::In);
    board.clear();
    EXPECT_EQ(board.size(), 0U);
    EXPECT_EQ(board.headCount(), HeadCount{});
    board.add(100, "Ash, A");
    board.finishFilling();
    EXPECT_EQ(board.item(0).icon, Icon::None);
}

TEST(BoardHeadCount, FollowsEveryChangeAndLeavesOutWhatIsNotRead) {
    Board board = filled({"Ash, A", "Birch, B", "Cedar, C"});
    EXPECT_EQ(board.headCount(), (HeadCount{0, 0}));
    EXPECT_TRUE(board.setIcon(0, Icon::In));
    EXPECT_TRUE(board.setIcon(1, Icon::Out));
    EXPECT_EQ(board.headCount(), (HeadCount{1, 1}));
    EXPECT_FALSE(board.setIcon(0, Icon::In));
    EXPECT_TRUE(board.setIcon(0, Icon::Out));
    EXPECT_EQ(board.headCount(), (HeadCount{0, 2}));
}

} // namespace
} // namespace kintar::board
