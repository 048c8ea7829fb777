#include "search/frmInOut.h"

#include "search/BoardIcons.h"

#include "search/SearchSite.h"
#include "support/FakeSettings.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTreeView>
#include <QtTest/QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <memory>

namespace kintar::search {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::SearchSite;
using Texts = std::vector<std::string>;

constexpr const char* allNames = "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as "
                                 "Name FROM [Names] ORDER BY LName, FName";

/// The board over a site whose names have one active card each.
class InOutBoard : public ::testing::Test {
protected:
    ~InOutBoard() override { place.unload(); }

    void addName(int id, const std::string& last, const std::string& states = "N") {
        site.foreign("INSERT INTO Names VALUES(" + std::to_string(id) + ",'" + last +
                     "','A',3,0,0,0);INSERT INTO Cards VALUES(" + std::to_string(id) + "," +
                     std::to_string(id) +
                     ",3,'7','7',1,NULL,NULL,0,0);INSERT INTO LocCards VALUES(" +
                     std::to_string(id) + "," + std::to_string(id) +
                     ",11,'2012-03-14 17:05:00',7,'" + states + "','','','')");
    }
    void addNames(int count) {
        std::string sql = "BEGIN;";
        for (int id = 1; id <= count; ++id) {
            const std::string number = std::to_string(id);
            sql += "INSERT INTO Names VALUES(" + number + ",'Name " + std::to_string(10000 + id) +
                   "','A',3,0,0,0);INSERT INTO Cards VALUES(" + number + "," + number +
                   ",3,'7','7',1,NULL,NULL,0,0);INSERT INTO LocCards VALUES(" + number + "," +
                   number + ",11,'2012-03-14 17:05:00',7,'N','','','');";
        }
        site.foreign(sql + "COMMIT;");
        site.settle();
    }
    void use(int id, const std::string& states) {
        site.foreign("UPDATE LocCards SET Inout1 = '" + states +
                     "' WHERE ID = " + std::to_string(id));
    }
    frmInOut& open(bool showUdfs = true, const std::string& sql = allNames) {
        frmInOut& form = place.get();
        form.LocGrp(3);
        form.setSQL(sql);
        form.LoadList(showUdfs);
        form.Show();
        awaitRefresh();
        return form;
    }
    /// Lets a refresh that runs aside end and be shown.
    void awaitRefresh() {
        while (place.get().isRefreshing()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    void tick() {
        place.get().Timer1_Timer();
        awaitRefresh();
    }
    QTreeView& list() { return *place.get().findChild<QTreeView*>(QStringLiteral("lvNames")); }
    std::string label(const char* name) {
        return place.get().findChild<QLabel*>(QLatin1String(name))->text().toStdString();
    }
    std::string udfText() {
        return place.get().findChild<QPlainTextEdit*>()->toPlainText().toStdString();
    }
    Texts sortTexts() {
        Texts texts;
        for (int row = 0; row < list().model()->rowCount(); ++row) {
            texts.push_back(list().model()->index(row, 1).data().toString().toStdString());
        }
        return texts;
    }
    void click(int row) {
        const QModelIndex index = list().model()->index(row, 0);
        list().scrollTo(index);
        QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::NoModifier,
                          list().visualRect(index).center());
    }
    std::string caption() { return place.get().windowTitle().toStdString(); }

    SearchSite site;
    kintar::testing::FakeSettings settings;
    DefaultInstance<frmInOut> place{[this] {
        auto form = platform::FormWindow::make<frmInOut>(site.globals(), settings, LocaleFormats{});
        form->onClose([this] { place.unload(); });
        return form;
    }};
};

TEST_F(InOutBoard, ListsThoseWhoAreInFirstEachGroupByName) {
    addName(1, "Zed", "I");
    addName(2, "Adams", "O");
    addName(3, "Moss", "I");
    addName(4, "Baker", "");
    open();
    EXPECT_THAT(sortTexts(), ElementsAre("1Moss, A", "1Zed, A", "2Adams, A", "2Baker, A"));
    EXPECT_EQ(label("lblHeadCount"), "In: 2      Out: 2");
    EXPECT_FALSE(list().selectionModel()->hasSelection());
    EXPECT_EQ(udfText(), "");
    EXPECT_EQ(caption(), "In / Out Status");
    EXPECT_EQ(list().model()->index(0, 0).data(Qt::AccessibleDescriptionRole).toString(),
              QStringLiteral("In"));
    EXPECT_TRUE(list().isColumnHidden(1));
}

TEST_F(InOutBoard, OnlyTheMostRecentUseOfAnActiveCardIsLookedAt) {
    addName(1, "Ash", "O");
    site.foreign("INSERT INTO LocCards VALUES(50,1,12,'2012-03-13 10:00:00',7,'I','','','')");
    open();
    EXPECT_THAT(sortTexts(), ElementsAre("2Ash, A"));
}

TEST_F(InOutBoard, AHolderWithOnlyInactiveCardsIsOut) {
    addName(1, "Ash", "I");
    addName(2, "Birch", "I");
    site.foreign("UPDATE Cards SET Status = 0 WHERE ID = 1");
    open();
    EXPECT_THAT(sortTexts(), ElementsAre("1Birch, A", "2Ash, A"));
}

TEST_F(InOutBoard, AClickShowsTheLastUseInTheCaption) {
    addName(1, "Ash");
    site.foreign("INSERT INTO Dev VALUES(11,7,'Main door')");
    open();
    click(0);
    EXPECT_EQ(caption(), "Loc:11  Dev: Main door  3/14/2012 5:05:00 PM");
}

TEST_F(InOutBoard, AClickOnAHolderWithoutLastLocationOrDeviceShowsTheName) {
    addName(1, "Ash");
    addName(2, "Birch");
    site.foreign("DELETE FROM LocCards WHERE ID = 2");
    open();
    click(0);
    EXPECT_EQ(caption(), "Ash, A");
    click(1);
    EXPECT_EQ(caption(), "Birch, A");
}

TEST_F(InOutBoard, AClickShowsTheFieldsOfTheGroupButNeverHiddenOnes) {
    addName(1, "Ash");
    site.foreign(
        "INSERT INTO UdfName VALUES(3,1,'Car',0),(3,2,'Secret',-1),(3,5,'Hall',0),"
        "(4,6,'Elsewhere',0);"
        "INSERT INTO UDF VALUES(1,5,'B',3),(1,1,'Blue <b>',3),(1,2,'hidden',3),(1,6,'x',4),"
        "(1,9,'no name',3),(2,1,'other',3)");
    open();
    click(0);
    EXPECT_EQ(udfText(), "Car: Blue <b>\nHall: B");
}

TEST_F(InOutBoard, FieldsAreShownOnlyWhereTheyWereAskedFor) {
    addName(1, "Ash");
    site.foreign("INSERT INTO UdfName VALUES(3,1,'Car',0);INSERT INTO UDF VALUES(1,1,'Blue',3)");
    open(false);
    click(0);
    EXPECT_EQ(udfText(), "");
    EXPECT_FALSE(place.get().findChild<QPlainTextEdit*>()->isVisible());
}

TEST_F(InOutBoard, AClickReadsThatHolderAnewAndLeavesTheRowWhereItIs) {
    addName(1, "Ash");
    addName(2, "Birch");
    open();
    use(2, "I");
    click(1);
    EXPECT_THAT(sortTexts(), ElementsAre("2Ash, A", "1Birch, A"));
    EXPECT_EQ(label("lblHeadCount"), "In: 1      Out: 1");
    tick();
    EXPECT_THAT(sortTexts(), ElementsAre("1Birch, A", "2Ash, A"));
}

TEST_F(InOutBoard, ARefreshShowsNewStatesAndKeepsTheSelectedName) {
    addName(1, "Ash");
    addName(2, "Birch");
    addName(3, "Cedar");
    open();
    click(1);
    use(3, "I");
    tick();
    EXPECT_THAT(sortTexts(), ElementsAre("1Cedar, A", "2Ash, A", "2Birch, A"));
    EXPECT_EQ(list().currentIndex().data().toString(), QStringLiteral("Birch, A"));
    EXPECT_TRUE(list().selectionModel()->isRowSelected(2));
    EXPECT_EQ(caption(), "Birch, A");
}

TEST_F(InOutBoard, ARefreshKeepsTheScrollPosition) {
    addNames(500);
    open();
    QCursor::setPos(QPoint(-100, -100));
    list().verticalScrollBar()->setValue(120);
    use(400, "I");
    tick();
    EXPECT_EQ(list().verticalScrollBar()->value(), 120);
}

TEST_F(InOutBoard, ARefreshKeepsTheNameUnderTheMouseThere) {
    addNames(500);
    frmInOut& form = open();
    form.move(10, 10);
    QCoreApplication::processEvents();
    list().verticalScrollBar()->setValue(120);
    const QPoint mouse = list().viewport()->mapToGlobal(QPoint(40, 60));
    QCursor::setPos(mouse);
    const auto under = [&] {
        return list().indexAt(list().viewport()->mapFromGlobal(mouse)).data().toString();
    };
    const QString before = under();
    ASSERT_FALSE(before.isEmpty());
    use(400, "I");
    use(401, "I");
    tick();
    EXPECT_EQ(under(), before);
}

TEST_F(InOutBoard, TheTimerRunsEveryMinuteAndAClickRestartsIt) {
    addName(1, "Ash");
    frmInOut& form = open();
    auto* timer = form.findChild<QTimer*>(QStringLiteral("Timer1"));
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(timer->interval(), 60000);
    EXPECT_TRUE(timer->isActive());
    timer->stop();
    click(0);
    EXPECT_TRUE(timer->isActive());
}

TEST_F(InOutBoard, ATickDuringARefreshIsSkippedAndTheTimerGoesOnAfterIt) {
    addNames(3000);
    frmInOut& form = open();
    auto* timer = form.findChild<QTimer*>(QStringLiteral("Timer1"));
    ASSERT_NE(timer, nullptr);
    form.Timer1_Timer();
    ASSERT_TRUE(form.isRefreshing());
    EXPECT_FALSE(timer->isActive());
    form.Timer1_Timer();
    awaitRefresh();
    EXPECT_TRUE(timer->isActive());
}

TEST_F(InOutBoard, ANewListOrTheEndOfTheWindowEndsARefresh) {
    addNames(3000);
    frmInOut& form = open();
    form.Timer1_Timer();
    form.setSQL("SELECT ID, LName AS Name FROM [Names] WHERE ID = 5");
    form.LoadList(false);
    awaitRefresh();
    EXPECT_THAT(sortTexts(), ElementsAre("2Name 10005"));
    form.setSQL(allNames);
    form.LoadList(false);
    form.close();
    EXPECT_FALSE(place.exists());
}

TEST_F(InOutBoard, AStatementThatFailsIsSaidAndReported) {
    open(false, "SELECT ID FROM Nowhere");
    EXPECT_THAT(label("lblStatus"), HasSubstr("Not all names can be listed: "));
    EXPECT_THAT(site.log.lines, ElementsAre(HasSubstr("in frmInOut/FillList")));
    EXPECT_EQ(label("lblHeadCount"), "In: 0      Out: 0");
}

TEST_F(InOutBoard, ASecondRowWithTheSameIdIsSaidAndTheNamesBeforeItAreWatched) {
    addName(1, "Ash", "I");
    site.foreign("INSERT INTO Company VALUES(3,0,'A'),(3,0,'B')");
    open(false, "SELECT [Names].ID, LName AS Name FROM [Names] LEFT JOIN Company ON "
                "[Names].Company = Company.Company");
    EXPECT_THAT(label("lblStatus"), HasSubstr("already associated"));
    EXPECT_THAT(sortTexts(), ElementsAre("1Ash"));
}

TEST_F(InOutBoard, StatesThatCannotBeReadStayAndAreSaidUntilTheyCan) {
    addName(1, "Ash", "I");
    open();
    site.foreign("ALTER TABLE LocCards RENAME TO Away");
    tick();
    EXPECT_THAT(sortTexts(), ElementsAre("1Ash, A"));
    EXPECT_THAT(label("lblStatus"), HasSubstr("those shown may be old"));
    site.foreign("ALTER TABLE Away RENAME TO LocCards");
    tick();
    EXPECT_EQ(label("lblStatus"), "");
}

TEST_F(InOutBoard, KeepsItsPlaceAndSize) {
    settings.values[{"Orvane\\InOut", "Width"}] = "6000";
    settings.values[{"Orvane\\InOut", "Height"}] = "4500";
    frmInOut& form = open();
    EXPECT_EQ(form.size(), QSize(400, 300));
    form.resize(420, 300);
    form.close();
    EXPECT_EQ((settings.values[{"Orvane\\InOut", "Width"}]), "6300");
    EXPECT_EQ((settings.values[{"Orvane\\InOut", "Height"}]), "4500");
    EXPECT_TRUE(settings.values.contains({"Orvane\\InOut", "Left"}));
}

TEST_F(InOutBoard, HasNineThousandSixHundredBySevenThousandTwipsAtFirst) {
    EXPECT_EQ(open().size(), QSize(640, 467));
}

TEST_F(InOutBoard, ShowsTheStatesOfEachTickWhileAnotherProgramWritesCardUses) {
    constexpr int names = 40;
    constexpr int hours = 8;
    addNames(names);
    open();
    for (int minute = 0; minute < hours * 60; ++minute) {
        const int id = 1 + minute % names;
        const bool in = (minute / names) % 2 == 0;
        use(id, in ? "I" : "O");
        tick();
        std::size_t expected = 0;
        for (int other = 1; other <= names; ++other) {
            const int last = minute - (minute - (other - 1) + names) % names;
            expected += last >= 0 && (last / names) % 2 == 0 ? 1 : 0;
        }
        ASSERT_EQ(label("lblHeadCount"), "In: " + std::to_string(expected) +
                                             "      Out: " + std::to_string(names - expected))
            << "minute " << minute;
    }
    EXPECT_EQ(sortTexts().size(), static_cast<std::size_t>(names));
    EXPECT_THAT(site.log.lines, IsEmpty());
}

TEST(BoardIcon, OutIsDrawnInTheColourOfSelectedTextOnASelectedRow) {
    const auto ring = [](QIcon::Mode mode) {
        return boardIcon(board::Icon::Out).pixmap(QSize(64, 64), mode).toImage().pixelColor(8, 32);
    };
    const QColor selectedText = QGuiApplication::palette().color(QPalette::HighlightedText);
    EXPECT_EQ(ring(QIcon::Selected), selectedText);
    EXPECT_NE(ring(QIcon::Normal), selectedText);
}

TEST_F(InOutBoard, TakesNoMoreMemoryHoweverOftenItIsRefreshed) {
    const auto inUse = [] {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    addNames(200);
    open();
    const auto refresh = [this](int times) {
        for (int i = 0; i < times; ++i) {
            use(1 + i % 200, i % 2 == 0 ? "I" : "O");
            tick();
        }
    };
    refresh(50); // what is made once: statements, fonts, the page cache
    const std::size_t before = inUse();
    if (before == 0) {
        GTEST_SKIP() << "a sanitizer's allocator keeps its own books, and finds what is lost";
    }
    refresh(300);
    // 16 bytes kept of each holder by each refresh would be a megabyte.
    EXPECT_LT(inUse(), before + 60000);
}

} // namespace
} // namespace kintar::search
