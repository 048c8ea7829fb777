#include "search/frmSelName.h"

#include "base/RunTimeError.h"
#include "search/SearchSite.h"
#include "support/FakeClock.h"

#include <QCalendarWidget>
#include <QListWidget>
#include <QScrollBar>
#include <QTableWidget>
#include <QtTest/QTest>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::SearchSite;

DateTime moment(const char* iso) {
    return DateTime::fromIso(iso).value();
}

class Opener final : public CalledFrom {
public:
    void PopulateListView(const std::string& sql) override {
        statements.push_back(sql);
        if (during) {
            during();
        }
        if (fail) {
            throw RunTimeError(3061, "There is no table Names.");
        }
    }
    std::vector<std::string> statements;
    std::function<void()> during;
    bool fail = false;
};

/// The criteria dialog of group 3, over a site with companies, fields and skills.
class CriteriaDialog : public ::testing::Test {
protected:
    CriteriaDialog() {
        std::string sql = "BEGIN;";
        for (int company = 1; company <= 4; ++company) {
            sql += "INSERT INTO Company VALUES(3," + std::to_string(company) + ",'Company " +
                   std::to_string(company) + "');";
        }
        sql += "INSERT INTO SKillName VALUES(7,'First aid',3),(9,'Fork lift',3),(8,'Other',4);";
        site.foreign(sql + "COMMIT;");
    }
    ~CriteriaDialog() override { place.unload(); }

    void addFields(int count) {
        std::string sql = "BEGIN;";
        for (int num = 1; num <= count; ++num) {
            sql += "INSERT INTO UdfName VALUES(3," + std::to_string(num) + ",'Field " +
                   std::to_string(num) + "',0);";
        }
        site.foreign(sql + "COMMIT;");
    }
    frmSelName& open() {
        frmSelName& form = place.get();
        form.LocGrp(3);
        form.setCalledFrom(&opener);
        form.Show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
        return form;
    }
    template <class Widget>
    Widget& control(const char* name) {
        auto* found = place.get().findChild<Widget*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }
    void click(const char* button) { QTest::mouseClick(&control<QWidget>(button), Qt::LeftButton); }
    void tab(int index) { control<QTabBar>("Tab1").setCurrentIndex(index); }
    std::string cell(int row, int column) {
        return control<QTableWidget>("grdUdf").item(row, column)->text().toStdString();
    }

    SearchSite site;
    kintar::testing::FakeClock clock{moment("2012-03-14T17:05:00")};
    Opener opener;
    DefaultInstance<frmSelName> place{[this] {
        auto form = platform::FormWindow::make<frmSelName>(site.globals(), clock, LocaleFormats{});
        form->onClose([this] { place.unload(); });
        return form;
    }};
};

TEST_F(CriteriaDialog, ShowsItsTextsAndFourTabsWithTheFirstFrame) {
    site.foreign("INSERT INTO Texts VALUES(514,'Criteria & more'),(205,'A&B')");
    frmSelName& form = open();
    EXPECT_EQ(form.windowTitle(), QStringLiteral("Criteria & more"));
    const QTabBar& tabs = control<QTabBar>("Tab1");
    ASSERT_EQ(tabs.count(), 4);
    EXPECT_EQ(tabs.tabText(0), QStringLiteral("Search Names"));
    EXPECT_EQ(tabs.tabText(1), QStringLiteral("A&&B"));
    EXPECT_EQ(tabs.tabText(3), QStringLiteral("Search Skills"));
    for (int selected = 0; selected < 4; ++selected) {
        tab(selected);
        for (int frame = 0; frame < 4; ++frame) {
            const std::string name = "Frame_" + std::to_string(frame);
            EXPECT_EQ(control<QFrame>(name.c_str()).isVisible(), frame == selected);
        }
    }
}

TEST_F(CriteriaDialog, AGroupWithoutSkillsHasThreeTabs) {
    site.foreign("DELETE FROM SKillName WHERE LocGrp = 3");
    open();
    EXPECT_EQ(control<QTabBar>("Tab1").count(), 3);
}

TEST_F(CriteriaDialog, BeingShownForAnotherGroupLoadsItsLists) {
    frmSelName& form = open();
    EXPECT_EQ(control<QListWidget>("lstComp").count(), 4);
    form.LocGrp(4);
    form.Show();
    EXPECT_EQ(control<QListWidget>("lstComp").count(), 0);
    EXPECT_EQ(control<QTreeWidget>("lvList").topLevelItemCount(), 1);
}

TEST_F(CriteriaDialog, AGroupWithoutFieldsDisablesTheGridAndItsEditor) {
    open();
    tab(1);
    EXPECT_FALSE(control<QTableWidget>("grdUdf").isEnabled());
    EXPECT_FALSE(control<QLineEdit>("mskUDFEdit").isEnabled());
    click("cmdOK");
    ASSERT_EQ(opener.statements.size(), 1U);
    EXPECT_THAT(opener.statements[0], ::testing::Not(HasSubstr("UDF")));
}

TEST_F(CriteriaDialog, ThirtyFieldsGiveThirtyRowsBelowTheHeading) {
    addFields(30);
    open();
    EXPECT_EQ(control<QTableWidget>("grdUdf").rowCount(), 30);
    EXPECT_EQ(cell(29, 0), "30");
    EXPECT_EQ(cell(29, 1), "Field 30");
}

TEST_F(CriteriaDialog, TenFieldsKeepTheDesignedTwentyOneRowsAndEmptyOnesCannotBeEdited) {
    addFields(10);
    open();
    tab(1);
    auto& grid = control<QTableWidget>("grdUdf");
    auto& editor = control<QLineEdit>("mskUDFEdit");
    EXPECT_EQ(grid.rowCount(), 21);
    for (int row = 1; row <= 10; ++row) {
        QTest::keyClick(&editor, Qt::Key_Down);
    }
    QTest::keyClicks(&editor, QStringLiteral("x"));
    click("cmdOK");
    EXPECT_THAT(opener.statements.at(0), ::testing::Not(HasSubstr("UDF")));
}

TEST_F(CriteriaDialog, TheEditorLiesOverTheCurrentValueAndStoresItWhenTheCellIsLeft) {
    addFields(5);
    open();
    tab(1);
    auto& grid = control<QTableWidget>("grdUdf");
    auto& editor = control<QLineEdit>("mskUDFEdit");
    EXPECT_TRUE(editor.hasFocus());
    const QRect over = grid.visualItemRect(grid.item(0, 2));
    EXPECT_EQ(editor.mapToGlobal(QPoint(0, 0)), grid.viewport()->mapToGlobal(over.topLeft()));
    EXPECT_EQ(editor.size(), over.size());
    EXPECT_EQ(editor.accessibleName(), QStringLiteral("Field 1"));
    QTest::keyClicks(&editor, QStringLiteral("Blue"));
    QTest::keyClick(&editor, Qt::Key_Down);
    EXPECT_EQ(cell(0, 2), "Blue");
    EXPECT_EQ(grid.currentRow(), 1);
    EXPECT_EQ(editor.text(), QString());
    EXPECT_TRUE(editor.hasFocus());
    QTest::keyClick(&editor, Qt::Key_Up);
    EXPECT_EQ(editor.text(), QStringLiteral("Blue"));
    EXPECT_EQ(editor.selectedText(), QStringLiteral("Blue"));
}

TEST_F(CriteriaDialog, DownOnTheLastRowDoesNothingAndPageKeysAlwaysReachTheGrid) {
    addFields(30);
    open();
    tab(1);
    auto& grid = control<QTableWidget>("grdUdf");
    auto& editor = control<QLineEdit>("mskUDFEdit");
    for (int page = 0; page < 30; ++page) {
        QTest::keyClick(&editor, Qt::Key_PageDown);
    }
    EXPECT_EQ(grid.currentRow(), 29);
    QTest::keyClicks(&editor, QStringLiteral("last"));
    QTest::keyClick(&editor, Qt::Key_Down);
    EXPECT_EQ(grid.currentRow(), 29);
    EXPECT_EQ(editor.text(), QStringLiteral("last"));
    QTest::keyClick(&editor, Qt::Key_PageDown);
    EXPECT_EQ(cell(29, 2), "last");
    EXPECT_EQ(editor.text(), QStringLiteral("last"));
    QTest::keyClick(&editor, Qt::Key_PageUp);
    EXPECT_LT(grid.currentRow(), 29);
    QTest::keyClick(&editor, Qt::Key_Up);
    EXPECT_TRUE(editor.hasFocus());
}

TEST_F(CriteriaDialog, AClickOnAValueMovesTheEditorThereAndOneElsewherePutsItAway) {
    addFields(5);
    open();
    tab(1);
    auto& grid = control<QTableWidget>("grdUdf");
    auto& editor = control<QLineEdit>("mskUDFEdit");
    QTest::keyClicks(&editor, QStringLiteral("Blue"));
    const auto clickCell = [&grid](int row, int column) {
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, Qt::NoModifier,
                          grid.visualItemRect(grid.item(row, column)).center());
    };
    clickCell(3, 2);
    EXPECT_EQ(cell(0, 2), "Blue");
    EXPECT_TRUE(editor.isVisible());
    EXPECT_EQ(editor.accessibleName(), QStringLiteral("Field 4"));
    clickCell(2, 1);
    EXPECT_FALSE(editor.isVisible());
    clickCell(0, 2);
    EXPECT_EQ(editor.text(), QStringLiteral("Blue"));
}

TEST_F(CriteriaDialog, ScrollingPutsTheEditorAwayAndAKeyBringsItBack) {
    addFields(60);
    open();
    tab(1);
    auto& grid = control<QTableWidget>("grdUdf");
    auto& editor = control<QLineEdit>("mskUDFEdit");
    QTest::keyClicks(&editor, QStringLiteral("Bl"));
    grid.verticalScrollBar()->setValue(5);
    EXPECT_FALSE(editor.isVisible());
    EXPECT_EQ(cell(0, 2), "Bl");
    EXPECT_TRUE(grid.hasFocus());
    QTest::keyClick(&grid, Qt::Key_Down);
    EXPECT_TRUE(editor.isVisible());
    EXPECT_EQ(grid.currentRow(), 1);
}

TEST_F(CriteriaDialog, OkStoresAPendingEditAndHandsTheStatementOver) {
    addFields(5);
    open();
    control<QLineEdit>("Text_3").setText(QStringLiteral("Sm"));
    tab(1);
    QTest::keyClicks(&control<QLineEdit>("mskUDFEdit"), QStringLiteral("Blue"));
    click("cmdOK");
    ASSERT_EQ(opener.statements.size(), 1U);
    EXPECT_THAT(opener.statements[0], HasSubstr(" AND LName LIKE 'Sm%'"));
    EXPECT_THAT(opener.statements[0], HasSubstr("UdfNum = 1 AND UdfText LIKE 'Blue%'))"));
    EXPECT_FALSE(place.exists());
}

TEST_F(CriteriaDialog, AllFourTabsGoIntoTheStatement) {
    addFields(2);
    site.foreign("INSERT INTO Loc VALUES(11,3,'North','',0)");
    open();
    control<QLineEdit>("Text_2").setText(QStringLiteral("An"));
    control<QListWidget>("lstComp").item(1)->setSelected(true);
    control<QRadioButton>("optVisTrue").setChecked(true);
    control<QRadioButton>("optTraceFalse").setChecked(true);
    control<QLineEdit>("Text_0").setText(QStringLiteral("12A"));
    control<QLineEdit>("Text_1").setText(QStringLiteral("77"));
    control<QRadioButton>("optInActive").setChecked(true);
    control<QDateEdit>("dtStartLow").setDate(QDate(2012, 3, 1));
    control<QDateEdit>("dtStopHigh").setDate(QDate(2012, 4, 1));
    control<QRadioButton>("optGtTrue").setChecked(true);
    control<QLineEdit>("Text_6").setText(QStringLiteral("30"));
    control<QTreeWidget>("lvList").topLevelItem(1)->setSelected(true);
    click("cmdOK");
    ASSERT_EQ(opener.statements.size(), 1U);
    EXPECT_THAT(
        opener.statements[0],
        HasSubstr(" AND FName LIKE 'An%' AND [Names].Company In (0,2) AND Visitor <> 0 AND "
                  "Trace = 0 And [Names].ID In (SELECT NameID FROM Cards WHERE LocGrp = 3 And "
                  "DlFlag <> 2 AND Code LIKE '12A%' AND CardNum LIKE '77%' AND Status = 0 AND "
                  "StartDate BETWEEN "));
    EXPECT_THAT(opener.statements[0], HasSubstr(" AND GTour <> 0 AND ID IN (SELECT CardID FROM "
                                                "LocCards WHERE Loc IN (11) AND LastDate <= "));
    EXPECT_THAT(opener.statements[0], HasSubstr("SkillID IN (9)))"));
}

TEST_F(CriteriaDialog, CancelAndTheTitleBarCloseWithoutCallingBack) {
    open();
    click("cmdCancel");
    EXPECT_FALSE(place.exists());
    open().close();
    EXPECT_FALSE(place.exists());
    EXPECT_TRUE(opener.statements.empty());
}

TEST_F(CriteriaDialog, AFailingStatementIsSaidInTheDialogWhichKeepsAllInput) {
    addFields(2);
    opener.fail = true;
    open();
    control<QLineEdit>("Text_3").setText(QStringLiteral("Sm"));
    control<QListWidget>("lstComp").item(1)->setSelected(true);
    control<QRadioButton>("optVisTrue").setChecked(true);
    control<QDateEdit>("dtStopHigh").setDate(QDate(2012, 4, 1));
    tab(1);
    QTest::keyClicks(&control<QLineEdit>("mskUDFEdit"), QStringLiteral("Blue"));
    click("cmdOK");
    ASSERT_TRUE(place.exists());
    EXPECT_TRUE(control<QLabel>("lblStatus").isVisible());
    EXPECT_THAT(control<QLabel>("lblStatus").text().toStdString(),
                HasSubstr("There is no table Names."));
    EXPECT_THAT(site.log.lines, ElementsAre(HasSubstr("error 3061 in frmSelName/cmdOK_Click")));
    EXPECT_EQ(control<QLineEdit>("Text_3").text(), QStringLiteral("Sm"));
    EXPECT_EQ(cell(0, 2), "Blue");
    opener.fail = false;
    click("cmdOK");
    ASSERT_EQ(opener.statements.size(), 2U);
    EXPECT_EQ(opener.statements[0], opener.statements[1]);
}

TEST_F(CriteriaDialog, WithoutAnOpenerOkSaysSoAndStays) {
    open().setCalledFrom(nullptr);
    click("cmdOK");
    EXPECT_TRUE(control<QLabel>("lblStatus").isVisible());
}

TEST_F(CriteriaDialog, BeingUnloadedWithinTheCallbackIsNoHarm) {
    opener.during = [this] { place.unload(); };
    open();
    click("cmdOK");
    EXPECT_FALSE(place.exists());
    EXPECT_EQ(opener.statements.size(), 1U);
}

TEST_F(CriteriaDialog, EscapeIsCancelWhereverTheFocusIs) {
    for (const char* name : {"Text_3", "lstComp", "optTraceTrue", "cmdOK"}) {
        open();
        control<QWidget>(name).setFocus();
        QTest::keyClick(&control<QWidget>(name), Qt::Key_Escape);
        EXPECT_FALSE(place.exists()) << name;
    }
    EXPECT_TRUE(opener.statements.empty());
}

TEST_F(CriteriaDialog, EnterPressesTheButtonThatHasTheFocusAndNothingElse) {
    open();
    QTest::keyClick(&control<QLineEdit>("Text_3"), Qt::Key_Return);
    EXPECT_TRUE(place.exists());
    control<QPushButton>("cmdCancel").setFocus();
    QTest::keyClick(&control<QPushButton>("cmdCancel"), Qt::Key_Return);
    EXPECT_FALSE(place.exists());
}

TEST_F(CriteriaDialog, DatesAreTodayWheneverTheDialogBecomesTheActiveWindow) {
    frmSelName& form = open();
    EXPECT_EQ(control<QDateEdit>("dtStartLow").date(), QDate(2012, 3, 14));
    tab(2);
    control<QDateEdit>("dtStartLow").setDate(QDate(2012, 3, 1));
    clock.local = moment("2012-03-15T08:00:00");
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    form.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
    EXPECT_EQ(control<QDateEdit>("dtStartLow").date(), QDate(2012, 3, 15));
    EXPECT_EQ(control<QDateEdit>("dtStopHigh").date(), QDate(2012, 3, 15));
}

TEST_F(CriteriaDialog, ADateChosenInAPickersOwnCalendarStays) {
    open();
    tab(2);
    auto& picker = control<QDateEdit>("dtStopHigh");
    const QPoint arrow(picker.width() - 8, picker.height() / 2);
    QTest::mouseClick(&picker, Qt::LeftButton, Qt::NoModifier, arrow);
    QWidget* popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    // What a window manager that hands the activation to the calendar tells the dialog.
    QEvent left(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(&place.get(), &left);
    auto* calendar = popup->findChild<QCalendarWidget*>();
    ASSERT_NE(calendar, nullptr);
    calendar->setSelectedDate(QDate(2012, 4, 1));
    Q_EMIT calendar->activated(QDate(2012, 4, 1));
    popup->close();
    QEvent back(QEvent::WindowActivate);
    QCoreApplication::sendEvent(&place.get(), &back);
    EXPECT_EQ(picker.date(), QDate(2012, 4, 1));
}

TEST_F(CriteriaDialog, TheLabelOfTheControlWithTheFocusHasTheSelectionColours) {
    open();
    const auto isSelected = [this](const char* name) {
        const QLabel& label = control<QLabel>(name);
        return label.autoFillBackground() && label.backgroundRole() == QPalette::Highlight &&
               label.foregroundRole() == QPalette::HighlightedText;
    };
    control<QLineEdit>("Text_2").setFocus();
    EXPECT_TRUE(isSelected("Label_2"));
    control<QLineEdit>("Text_3").setFocus();
    EXPECT_FALSE(isSelected("Label_2"));
    EXPECT_TRUE(isSelected("Label_3"));
    for (const char* button : {"optTraceTrue", "optTraceFalse", "optTraceEither"}) {
        control<QRadioButton>(button).setFocus();
        EXPECT_TRUE(isSelected("Label_5")) << button;
    }
    for (const char* button : {"optVisTrue", "optVisFalse", "optVisEither"}) {
        control<QRadioButton>(button).setFocus();
        EXPECT_TRUE(isSelected("Label_7")) << button;
    }
    control<QListWidget>("lstComp").setFocus();
    EXPECT_TRUE(isSelected("Label_4"));
    EXPECT_FALSE(isSelected("Label_7"));
    tab(2);
    for (const char* button : {"optGtTrue", "optGtFalse", "optGtEither"}) {
        control<QRadioButton>(button).setFocus();
        EXPECT_TRUE(isSelected("Label_11")) << button;
    }
}

TEST_F(CriteriaDialog, ADatabaseErrorOfTheLoadPassesToTheOpenerAndShowsNothing) {
    site.foreign("DROP TABLE SKillName");
    frmSelName& form = place.get();
    form.LocGrp(3);
    EXPECT_THROW(form.Show(), RunTimeError);
    EXPECT_FALSE(form.isVisible());
}

} // namespace
} // namespace kintar::search
