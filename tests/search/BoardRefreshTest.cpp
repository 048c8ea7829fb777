#include "search/BoardRefresh.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <latch>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace kintar::board {
namespace {

using std::chrono::milliseconds;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FakeSource final : public StateSource {
public:
    bool prepare() override {
        if (refuse) {
            throw std::runtime_error("database is missing");
        }
        return aside;
    }
    void begin() override { events.emplace_back("begin"); }
    std::vector<Icon> read(std::span<const std::int32_t> nameIds) override {
        std::vector<Icon> icons;
        for (const std::int32_t id : nameIds.first(std::min(nameIds.size(), together))) {
            icons.push_back(readOne(id));
        }
        return icons;
    }
    Icon readOne(std::int32_t nameId) {
        readers.push_back(std::this_thread::get_id());
        if (goOn) {
            reading.count_down();
            goOn->wait();
        }
        if (nameId == failAt) {
            throw std::runtime_error("database is locked");
        }
        events.push_back("read " + std::to_string(nameId));
        return in[nameId] ? Icon::In : Icon::Out;
    }
    void end() noexcept override { events.emplace_back("end"); }

    bool aside = false;
    std::size_t together = 1;
    bool refuse = false;
    std::map<std::int32_t, bool> in;
    std::int32_t failAt = 0;
    std::vector<std::string> events;
    std::vector<std::thread::id> readers;
    std::latch reading{1};
    std::unique_ptr<std::latch> goOn; ///< a read waits for it
};

class BoardRefreshing : public ::testing::TestWithParam<bool> {
protected:
    BoardRefreshing() {
        source.aside = GetParam();
        for (const auto& [id, name] :
             {std::pair{1, "Ash, A"}, std::pair{2, "Birch, B"}, std::pair{3, "Cedar, C"}}) {
            board.add(id, name);
        }
        board.finishFilling();
    }
    std::unique_ptr<BoardRefresh> begin() {
        return std::make_unique<BoardRefresh>(board, source, [this] { ++ended; });
    }
    static void await(BoardRefresh& refresh) {
        while (!refresh.waitFor(milliseconds(1000))) {
        }
    }

    Board board;
    FakeSource source;
    std::atomic<int> ended = 0;
};

INSTANTIATE_TEST_SUITE_P(AtOnceAndAside, BoardRefreshing, ::testing::Values(false, true));

TEST_P(BoardRefreshing, ReadsAllInOneViewOfTheDataAndShowsThemTogether) {
    source.in[2] = true;
    auto refresh = begin();
    await(*refresh);
    EXPECT_THAT(source.events, ElementsAre("begin", "read 1", "read 2", "read 3", "end"));
    EXPECT_EQ(board.item(1).icon, Icon::None);
    EXPECT_TRUE(refresh->show(board));
    EXPECT_EQ(board.itemAt(0), 1U);
    EXPECT_EQ(board.headCount(), (HeadCount{1, 2}));
    refresh.reset();
    EXPECT_EQ(ended, 1);
}

TEST_P(BoardRefreshing, AnErrorEndsTheReadAndLeavesTheBoardAsItWas) {
    source.failAt = 2;
    board.setIcon(0, Icon::In);
    const auto refresh = begin();
    await(*refresh);
    EXPECT_THROW(refresh->show(board), std::runtime_error);
    EXPECT_EQ(source.events.back(), "end");
    EXPECT_EQ(board.item(0).icon, Icon::In);
}

TEST_P(BoardRefreshing, ASourceThatCannotBeMadeReadyIsAnErrorOfTheRefresh) {
    source.refuse = true;
    const auto refresh = begin();
    await(*refresh);
    EXPECT_THROW(refresh->show(board), std::runtime_error);
    EXPECT_THAT(source.events, IsEmpty());
}

TEST_P(BoardRefreshing, WhatAClickHasReadMeanwhileIsNotReplacedByAnOlderState) {
    const auto refresh = begin();
    board.setIcon(0, Icon::In);
    refresh->keep(0);
    await(*refresh);
    refresh->show(board);
    EXPECT_EQ(board.item(0).icon, Icon::In);
    EXPECT_EQ(board.item(1).icon, Icon::Out);
}

TEST_P(BoardRefreshing, HoldersReadTogetherAreAllReadOnceInOrder) {
    source.together = 2;
    source.in[3] = true;
    const auto refresh = begin();
    await(*refresh);
    EXPECT_THAT(source.events, ElementsAre("begin", "read 1", "read 2", "read 3", "end"));
    refresh->show(board);
    EXPECT_EQ(board.item(0).icon, Icon::Out);
    EXPECT_EQ(board.item(2).icon, Icon::In);
}

TEST_P(BoardRefreshing, NothingNewIsNoChange) {
    auto first = begin();
    await(*first);
    EXPECT_TRUE(first->show(board));
    first.reset();
    const auto second = begin();
    await(*second);
    EXPECT_FALSE(second->show(board));
}

TEST_P(BoardRefreshing, NobodyIsReadToo) {
    board.clear();
    board.finishFilling();
    const auto refresh = begin();
    await(*refresh);
    EXPECT_FALSE(refresh->show(board));
}

class BoardRefreshAside : public BoardRefreshing {};
INSTANTIATE_TEST_SUITE_P(Aside, BoardRefreshAside, ::testing::Values(true));

TEST_P(BoardRefreshAside, ReadsOnAThreadOfItsOwn) {
    const auto refresh = begin();
    await(*refresh);
    EXPECT_THAT(source.readers, Each(::testing::Ne(std::this_thread::get_id())));
}

TEST_P(BoardRefreshAside, EndingHalfwayStopsTheRead) {
    source.goOn = std::make_unique<std::latch>(1);
    auto refresh = begin();
    source.reading.wait();
    EXPECT_FALSE(refresh->waitFor(milliseconds(0)));
    std::thread ending([&] { refresh.reset(); });
    source.goOn->count_down();
    ending.join();
    EXPECT_EQ(source.events.front(), "begin");
    EXPECT_EQ(source.events.back(), "end");
}

TEST(BoardRefreshAtOnce, ReadsOnTheThreadThatAsksForIt) {
    Board board;
    board.add(1, "Ash, A");
    board.finishFilling();
    FakeSource source;
    BoardRefresh refresh(board, source, [] {});
    EXPECT_TRUE(refresh.waitFor(milliseconds(0)));
    EXPECT_THAT(source.readers, ElementsAre(std::this_thread::get_id()));
}

} // namespace
} // namespace kintar::board
