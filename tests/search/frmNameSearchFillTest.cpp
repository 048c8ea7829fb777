// A fill that takes longer than a moment.
#include "search/NameSearchFixture.h"

#include <QHeaderView>

namespace kintar::testing {
namespace {

/// Every read of the list is held until the test ends it.
class LongFill : public NameSearch {
protected:
    LongFill() { holdReads(); }

    void holdReads() {
        twins.tables().begin = [this](std::string_view, std::function<void()> ended) {
            held = std::make_shared<HeldRead::Held>();
            held->ended = std::move(ended);
            return std::make_unique<HeldRead>(held);
        };
    }

    void end(std::vector<Row> rows) {
        held->rows = recordset(nameColumns, rows);
        held->ended();
    }
    [[nodiscard]] bool enabled(const char* name) { return control<QPushButton>(name).isEnabled(); }
    void expectStoppedAndUsable() {
        EXPECT_TRUE(held->dropped);
        EXPECT_FALSE(form().isFilling());
        EXPECT_TRUE(shown().empty());
        EXPECT_TRUE(enabled("cmdSearch"));
        EXPECT_TRUE(enabled("cmdOK"));
        EXPECT_FALSE(control<QPushButton>("cmdStop").isVisible());
    }

    std::shared_ptr<HeldRead::Held> held;
};

TEST_F(LongFill, ShowsThatItSearchesAndTurnsOffWhatMustWait) {
    open();
    search();
    EXPECT_TRUE(form().isFilling());
    EXPECT_EQ(label("lblCount"), "Searching…");
    EXPECT_TRUE(control<QPushButton>("cmdStop").isVisible());
    EXPECT_FALSE(list().isVisible());
    EXPECT_FALSE(enabled("cmdSearch"));
    EXPECT_FALSE(enabled("cmdOK"));
    EXPECT_TRUE(enabled("cmdCancel"));
}

TEST_F(LongFill, ShowsTheRowsWhenTheyAreThereAndTheStatusAfterThem) {
    open();
    search();
    twins.tables().takeStatements();
    end(threeNames());
    ASSERT_TRUE(runUntil([&] { return !form().isFilling(); }));
    EXPECT_EQ(shown().size(), 3U);
    EXPECT_TRUE(list().isVisible());
    EXPECT_TRUE(enabled("cmdSearch"));
    EXPECT_TRUE(enabled("cmdOK"));
    EXPECT_FALSE(control<QPushButton>("cmdStop").isVisible());
    EXPECT_EQ(label("lblCount"), "3 names found.");
    EXPECT_EQ(twins.tables().takeStatements(),
              (std::vector<std::string>{imageQuery(30), typesQuery, useQuery(30), deviceQuery,
                                        useQuery(30), deviceQuery}));
}

TEST_F(LongFill, StopLeavesTheListEmptyAndSaysSo) {
    open();
    search();
    click("cmdStop");
    expectStoppedAndUsable();
    EXPECT_EQ(label("lblCount"), "The search was stopped. The list is empty.");
    EXPECT_FALSE(object->SelNameReady());
}

TEST_F(LongFill, WhatFollowsAFillFollowsAStoppedOneToo) {
    open();
    twins.tables().begin = nullptr;
    search();
    clickRow(1);
    holdReads();
    control<QPushButton>("cmdInOut").setEnabled(false);
    search();
    EXPECT_EQ(title(), "HQ:  Search Names");
    click("cmdStop");
    EXPECT_EQ(title(), "HQ:  Search Names");
    EXPECT_TRUE(enabled("cmdInOut"));
    EXPECT_EQ(control<platform::PhotoBox>("Lead1").state(), platform::PhotoBox::State::Blank);
    EXPECT_EQ(label("Label_1"), "");
    click("cmdOK"); // there is no current name: the earlier values stay
    EXPECT_EQ(object->SelNameID(), 0);
    EXPECT_TRUE(object->SelNameReady());
}

TEST_F(LongFill, AnEndThatWasOnItsWayWhenStoppedShowsNothing) {
    open();
    search();
    end(threeNames());
    click("cmdStop");
    runPending();
    expectStoppedAndUsable();
}

TEST_F(LongFill, CancelStopsIt) {
    open();
    search();
    click("cmdCancel");
    expectStoppedAndUsable();
    EXPECT_FALSE(form().isVisible());
    EXPECT_TRUE(object->SelNameReady());
}

TEST_F(LongFill, ANewGroupStopsIt) {
    open();
    search();
    EXPECT_EQ(set(3), 0);
    expectStoppedAndUsable();
    EXPECT_EQ(label("lblCount"), "The search was stopped. The list is empty.");
    EXPECT_TRUE(form().isVisible());
}

TEST_F(LongFill, TheEndOfTheObjectStopsIt) {
    open();
    search();
    object.reset();
    runPending();
    EXPECT_TRUE(held->dropped);
    EXPECT_FALSE(twins.place.exists());
}

TEST_F(LongFill, WhatFailsLateIsReportedAndSaid) {
    open();
    search();
    held->error = RunTimeError(-2147467259, "the database is locked");
    held->ended();
    ASSERT_TRUE(runUntil([&] { return !form().isFilling(); }));
    EXPECT_EQ(label("lblCount"), "That failed: the database is locked");
    EXPECT_EQ(twins.takeEvents().back(),
              "ReportError -2147467259 the database is locked\r\nfrmNameSearch/PopulateListView 2");
    EXPECT_TRUE(shown().empty());
    EXPECT_TRUE(enabled("cmdSearch"));
}

TEST_F(LongFill, AnotherStatementTakesItsPlace) {
    open();
    search();
    const auto first = held;
    form().PopulateListView("another");
    EXPECT_TRUE(first->dropped);
    end({Row{20, "Zorn, Ida", 0, 0, Cell()}});
    ASSERT_TRUE(runUntil([&] { return !form().isFilling(); }));
    EXPECT_EQ(shown(), std::vector<std::string>{"Zorn, Ida"});
}

TEST_F(LongFill, EnterAndColumnClicksWaitToo) {
    open();
    search();
    twins.tables().takeStatements();
    QTest::keyClick(&control<QLineEdit>("Text_0"), Qt::Key_Return);
    EXPECT_TRUE(twins.tables().takeStatements().empty());
}

/// More names than are sorted at once, in descending order; number 1 is the last.
class LongList : public NameSearch {
protected:
    LongList() {
        std::vector<Row> rows;
        for (int id = count; id > 0; --id) {
            rows.push_back(Row{id, "name " + std::to_string(100000 + id), 0, 0, Cell()});
        }
        twins.tables().answer(allNames, nameColumns, rows);
        open();
        search();
    }
    void clickHeading(int column) {
        QHeaderView& header = *list().header();
        const int x = header.sectionViewportPosition(column) + header.sectionSize(column) / 2;
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, {x, header.height() / 2});
    }
    std::string first() { return list().model()->index(0, 0).data().toString().toStdString(); }
    void waitForEnd() {
        ASSERT_TRUE(runUntil([&] { return !form().isFilling(); }));
    }

    static constexpr int count = static_cast<int>(search::NameSort::longList) + 1;
    const std::string smallest = "name 100001";
    const std::string largest = "name 150001";
};

TEST_F(LongList, IsSortedWhileTheWindowGoesOn) {
    ASSERT_EQ(first(), largest);
    clickHeading(0);
    EXPECT_TRUE(form().isFilling());
    EXPECT_EQ(label("lblCount"), "Sorting…");
    EXPECT_TRUE(list().isVisible());
    EXPECT_EQ(first(), largest);
    EXPECT_FALSE(control<QPushButton>("cmdOK").isEnabled());
    EXPECT_TRUE(control<QPushButton>("cmdStop").isVisible());
    waitForEnd();
    EXPECT_EQ(first(), smallest);
    EXPECT_EQ(label("lblCount"), std::to_string(count) + " names found.");
    EXPECT_TRUE(control<QPushButton>("cmdOK").isEnabled());
    EXPECT_EQ(list().currentIndex().row(), count - 1) << "the current name stays the current one";
}

TEST_F(LongList, StaysAsItWasWhereItsSortingIsStopped) {
    clickHeading(0);
    click("cmdStop");
    EXPECT_FALSE(form().isFilling());
    runPending();
    EXPECT_EQ(first(), largest);
    EXPECT_EQ(label("lblCount"), std::to_string(count) + " names found.");
    EXPECT_FALSE(list().header()->isSortIndicatorShown());
}

TEST_F(LongList, IsSortedBeforeItIsShownWhereSortingIsOn) {
    clickHeading(0);
    waitForEnd();
    search();
    EXPECT_TRUE(form().isFilling());
    EXPECT_EQ(list().model()->rowCount(), 0);
    waitForEnd();
    EXPECT_EQ(first(), smallest);
    EXPECT_EQ(list().currentIndex().row(), 0);
}

TEST_F(LongList, IsEmptyWhereASearchIsStoppedWhileItSorts) {
    clickHeading(0);
    waitForEnd();
    search();
    click("cmdStop");
    runPending();
    EXPECT_EQ(list().model()->rowCount(), 0);
    EXPECT_EQ(label("lblCount"), "The search was stopped. The list is empty.");
}

TEST_F(LongList, IsDroppedWithItsObjectWhileItSorts) {
    clickHeading(0);
    object.reset();
    runPending();
    EXPECT_FALSE(twins.place.exists());
}

} // namespace
} // namespace kintar::testing
