#include "search/BoardRefresh.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <stdexcept>
#include <string>

namespace kintar::board {
namespace {

using ::testing::ElementsAre;

class FakeSource final : public StateSource {
public:
    void begin() override { events.emplace_back("begin"); }
    Icon read(std::int32_t nameId) override {
        if (nameId == failAt) {
            throw std::runtime_error("database is locked");
        }
        events.push_back("read " + std::to_string(nameId));
        return in[nameId] ? Icon::In : Icon::Out;
    }
    void end() noexcept override { events.emplace_back("end"); }

    std::map<std::int32_t, bool> in;
    std::int32_t failAt = 0;
    std::vector<std::string> events;
};

class BoardRefreshing : public ::testing::Test {
protected:
    BoardRefreshing() {
        for (const auto& [id, name] :
             {std::pair{1, "Ash, A"}, std::pair{2, "Birch, B"}, std::pair{3, "Cedar, C"}}) {
            board.add(id, name);
        }
        board.finishFilling();
    }
    static bool always() { return true; }
    static bool never() { return false; }

    Board board;
    FakeSource source;
};

TEST_F(BoardRefreshing, ReadsAllInOneViewOfTheDataAndShowsThemTogether) {
    source.in[2] = true;
    BoardRefresh refresh(board, source);
    EXPECT_EQ(refresh.readSlice(never), BoardRefresh::Progress::Read);
    EXPECT_THAT(source.events, ElementsAre("begin", "read 1", "read 2", "read 3", "end"));
    EXPECT_EQ(board.item(1).icon, Icon::None);
    EXPECT_TRUE(refresh.show());
    EXPECT_EQ(board.itemAt(0), 1U);
    EXPECT_EQ(board.headCount(), (HeadCount{1, 2}));
}

TEST_F(BoardRefreshing, GivesTheTurnBackAfterEachSliceAndLosesNothing) {
    BoardRefresh refresh(board, source);
    EXPECT_EQ(refresh.readSlice(always), BoardRefresh::Progress::Reading);
    EXPECT_EQ(refresh.readSlice(always), BoardRefresh::Progress::Reading);
    EXPECT_EQ(refresh.readSlice(always), BoardRefresh::Progress::Read);
    EXPECT_THAT(source.events, ElementsAre("begin", "read 1", "read 2", "read 3", "end"));
}

TEST_F(BoardRefreshing, AnErrorEndsTheReadAndLeavesTheBoardAsItWas) {
    source.failAt = 2;
    board.setIcon(0, Icon::In);
    BoardRefresh refresh(board, source);
    EXPECT_THROW(refresh.readSlice(never), std::runtime_error);
    EXPECT_EQ(source.events.back(), "end");
    EXPECT_EQ(board.item(0).icon, Icon::In);
}

TEST_F(BoardRefreshing, EndingHalfwayEndsTheRead) {
    {
        BoardRefresh refresh(board, source);
        refresh.readSlice(always);
    }
    EXPECT_EQ(source.events.back(), "end");
}

TEST_F(BoardRefreshing, WhatAClickHasReadMeanwhileIsNotReplacedByAnOlderState) {
    BoardRefresh refresh(board, source);
    refresh.readSlice(always);
    board.setIcon(0, Icon::In);
    refresh.keep(0);
    while (refresh.readSlice(always) == BoardRefresh::Progress::Reading) {
    }
    refresh.show();
    EXPECT_EQ(board.item(0).icon, Icon::In);
    EXPECT_EQ(board.item(1).icon, Icon::Out);
}

TEST_F(BoardRefreshing, NothingNewIsNoChange) {
    {
        BoardRefresh first(board, source);
        first.readSlice(never);
        EXPECT_TRUE(first.show());
    }
    BoardRefresh second(board, source);
    second.readSlice(never);
    EXPECT_FALSE(second.show());
}

TEST(BoardRefreshOfNobody, IsReadAtOnce) {
    Board board;
    board.finishFilling();
    FakeSource source;
    BoardRefresh refresh(board, source);
    EXPECT_EQ(refresh.readSlice([] { return true; }), BoardRefresh::Progress::Read);
    EXPECT_FALSE(refresh.show());
}

} // namespace
} // namespace kintar::board
