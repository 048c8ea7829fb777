#include "overrides/frmOvrSchedule.h"

#include "overrides/OverrideDesk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QCoreApplication>
#include <QDateEdit>
#include <QFrame>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QTest>
#include <QTreeWidget>

#include <string>

namespace kintar {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using namespace kintar::testing;

/// The editor window on a door, shown.
struct Window {
    explicit Window(std::int16_t pointType = 0, int stored = 0) {
        if (stored > 0) {
            desk.store(stored);
        }
        desk.passPoint(pointType);
        desk.form().showEditor();
    }

    template <class Control>
    Control* find(const char* name) {
        auto* control = desk.form().findChild<Control*>(QString::fromLatin1(name));
        EXPECT_NE(control, nullptr) << name;
        return control;
    }
    void click(const char* name) { find<QPushButton>(name)->click(); }
    std::string text(const char* name) { return find<QLabel>(name)->text().toStdString(); }
    [[nodiscard]] bool isOpen() { return desk.overrides.ovrSchedule().exists(); }
    std::string title() { return desk.form().windowTitle().toStdString(); }
    /// From 12:00 to 13:00.
    void fillIn() {
        find<QSlider>("Slider1")->setValue(48);
        find<QSlider>("Slider2")->setValue(52);
    }

    OverrideDesk desk;
};

TEST(frmOvrSchedule, OpensOnANewScheduleOfThePoint) {
    Window window;
    EXPECT_EQ(window.title(), "Scheduled Override   New");
    EXPECT_EQ(window.find<QTabBar>("Tab1")->tabText(0).toStdString(), "Lisbon:  Dock door");
    EXPECT_EQ(window.find<QTabBar>("Tab1")->tabText(1).toStdString(), "Additional Days");
    EXPECT_EQ(window.text("Label_5"), "9:15:00 AM");
    EXPECT_EQ(window.find<QSlider>("Slider1")->value(), 37);
    EXPECT_EQ(window.find<QDateEdit>("ssdStartDate")->text().toStdString(), "7/4/2012");
    EXPECT_EQ(window.text("Label_7"), "Ann  7/4/2012 9:00:00 AM");
    EXPECT_TRUE(window.find<QRadioButton>("opt2")->isChecked());
    EXPECT_TRUE(window.find<QRadioButton>("opt8")->isChecked());
    EXPECT_FALSE(window.find<QFrame>("Frame_2")->isVisible());
}

TEST(frmOvrSchedule, PreparesTheFormFirst) {
    const Window window;
    const auto prepared =
        std::ranges::find(window.desk.server.events, "PrepareForm frmOvrSchedule");
    const auto queried = std::ranges::find(window.desk.server.events,
                                           "Select ID From OvrSchedule Where PointID = 11");
    EXPECT_LT(prepared, queried);
}

TEST(frmOvrSchedule, ADoorShowsNoArmAndAnInputShowsAllCommands) {
    Window door(0);
    for (const char* option : {"opt4", "opt5", "opt9", "opt10"}) {
        EXPECT_FALSE(door.find<QRadioButton>(option)->isVisible()) << option;
    }
    EXPECT_TRUE(door.find<QRadioButton>("opt1")->isVisible());
    Window input(1);
    for (const char* option : {"opt4", "opt5", "opt9", "opt10"}) {
        EXPECT_TRUE(input.find<QRadioButton>(option)->isVisible()) << option;
    }
    EXPECT_TRUE(input.find<QRadioButton>("opt4")->isChecked());
}

TEST(frmOvrSchedule, AlwaysShowsTheZoneOfItsTimes) {
    Window window;
    const std::string zone =
        "Times are in Central Standard Time (UTC-05:00 now), the same as this workstation.";
    EXPECT_EQ(window.text("lblZone"), zone);
    window.find<QTabBar>("Tab1")->setCurrentIndex(1);
    EXPECT_TRUE(window.find<QLabel>("lblZone")->isVisible());
}

TEST(frmOvrSchedule, TheReadoutFollowsADragAndTheCheckComesAtItsEnd) {
    Window window;
    auto* slider = window.find<QSlider>("Slider1");
    slider->setSliderDown(true);
    slider->setSliderPosition(3);
    EXPECT_EQ(window.text("Label_5"), "12:45:00 AM");
    EXPECT_EQ(slider->value(), 3);
    slider->setSliderDown(false);
    EXPECT_EQ(window.text("Label_5"), "9:15:00 AM");
    EXPECT_EQ(slider->value(), 37);
    EXPECT_THAT(slider->toolTip().toStdString(), HasSubstr("9:15:00 AM"));
    EXPECT_EQ(slider->accessibleName().toStdString(), "Start Time 9:15:00 AM");
}

TEST(frmOvrSchedule, ADateInThePastBecomesToday) {
    Window window;
    window.find<QDateEdit>("ssdStopDate")->setDate(QDate(2012, 7, 1));
    EXPECT_EQ(window.find<QDateEdit>("ssdStopDate")->date(), QDate(2012, 7, 4));
}

TEST(frmOvrSchedule, ADateThatIsHalfTypedCountsWhenAButtonIsPressed) {
    Window window;
    window.fillIn();
    auto* date = window.find<QDateEdit>("ssdStopDate");
    date->setSelectedSection(QDateTimeEdit::MonthSection);
    QTest::keyClicks(date, QStringLiteral("8"));
    window.click("cmdOK");
    ASSERT_THAT(window.desk.written(), SizeIs(1));
    EXPECT_THAT(window.desk.written()[0], HasSubstr("#2012-08-04T18:00:00#"));
}

TEST(frmOvrSchedule, OkSavesAndClosesAndIsDone) {
    Window window;
    window.fillIn();
    window.click("cmdOK");
    EXPECT_FALSE(window.isOpen());
    EXPECT_TRUE(window.desk.overrides.done().get());
    EXPECT_THAT(window.desk.written(),
                ElementsAre("INSERT INTO OvrSchedule (PointID, PointType, StartCmd, StopCmd, Opr, "
                            "OprID, Status, StartDate, StopDate) Values (11, 0, 1, 3, 'Ann  "
                            "7/4/2012 9:00:00 AM', 3, 1, #2012-07-04T17:00:00#, "
                            "#2012-07-04T18:00:00#)"));
}

TEST(frmOvrSchedule, CancelEscapeAndTheTitleBarCloseWithoutSavingAndAreDone) {
    for (const char* way : {"cancel", "escape", "title bar", "shut-down"}) {
        Window window;
        const std::string chosen = way;
        if (chosen == "cancel") {
            window.click("cmdCancel");
        } else if (chosen == "escape") {
            QTest::keyClick(&window.desk.form(), Qt::Key_Escape);
        } else if (chosen == "title bar") {
            window.desk.form().close();
        } else {
            window.desk.server.globals.forms.unload(FormId::frmOvrSchedule);
        }
        EXPECT_FALSE(window.isOpen()) << way;
        EXPECT_TRUE(window.desk.overrides.done().get()) << way;
        EXPECT_THAT(window.desk.written(), IsEmpty()) << way;
    }
}

TEST(frmOvrSchedule, AFormThatWasNeverLoadedIsDiscardedWithoutDone) {
    OverrideDesk desk;
    desk.passPoint();
    desk.server.globals.forms.unload(FormId::frmOvrSchedule);
    EXPECT_FALSE(desk.overrides.done().get());
}

TEST(frmOvrSchedule, StoringPropertiesDoesNotLoadIt) {
    OverrideDesk desk;
    desk.passPoint();
    EXPECT_THAT(desk.server.events, IsEmpty());
}

TEST(frmOvrSchedule, AnErrorTakesThePlaceOfTheFramesUntilItIsConfirmed) {
    Window window;
    window.find<QSlider>("Slider1")->setValue(52);
    window.find<QSlider>("Slider2")->setValue(52);
    window.find<QTabBar>("Tab1")->setCurrentIndex(1);
    window.click("cmdOK");
    EXPECT_TRUE(window.isOpen());
    EXPECT_EQ(window.find<QTabBar>("Tab1")->currentIndex(), 0);
    EXPECT_TRUE(window.find<QFrame>("Frame_2")->isVisible());
    EXPECT_FALSE(window.find<QWidget>("Frame_0")->isVisible());
    EXPECT_EQ(window.text("Label_8"), "Stop Date cannot be less than Start Date !!");
    for (const char* button : {"cmdNext", "cmdPrevious", "cmdOK", "cmdCancel"}) {
        EXPECT_FALSE(window.find<QPushButton>(button)->isEnabled()) << button;
    }
    EXPECT_TRUE(window.find<QPushButton>("cmdDelete")->isEnabled());
    window.click("cmdErrOK");
    EXPECT_FALSE(window.find<QFrame>("Frame_2")->isVisible());
    EXPECT_TRUE(window.find<QWidget>("Frame_0")->isVisible());
    EXPECT_TRUE(window.find<QPushButton>("cmdOK")->isEnabled());
    EXPECT_EQ(window.desk.form().focusWidget(), window.find<QSlider>("Slider2"));
}

TEST(frmOvrSchedule, ReturnConfirmsTheErrorAndThenSaves) {
    Window window;
    window.find<QSlider>("Slider1")->setValue(52);
    window.find<QSlider>("Slider2")->setValue(52);
    QTest::keyClick(&window.desk.form(), Qt::Key_Return);
    EXPECT_TRUE(window.find<QFrame>("Frame_2")->isVisible());
    QTest::keyClick(&window.desk.form(), Qt::Key_Return);
    EXPECT_FALSE(window.find<QFrame>("Frame_2")->isVisible());
    window.find<QSlider>("Slider2")->setValue(60);
    QTest::keyClick(&window.desk.form(), Qt::Key_Return);
    EXPECT_FALSE(window.isOpen());
    EXPECT_THAT(window.desk.written(), SizeIs(1));
}

TEST(frmOvrSchedule, AdditionalDaysStartTodayAndAreAddedAndRemoved) {
    Window window;
    window.fillIn();
    window.find<QTabBar>("Tab1")->setCurrentIndex(1);
    EXPECT_FALSE(window.find<QWidget>("Frame_0")->isVisible());
    EXPECT_EQ(window.find<QDateEdit>("dtMultiStart")->date(), QDate(2012, 7, 4));
    EXPECT_EQ(window.find<QDateEdit>("dtMultiStop")->date(), QDate(2012, 7, 4));
    for (const int day : {5, 6, 7}) {
        window.find<QDateEdit>("dtMultiStart")->setDate(QDate(2012, 7, day));
        window.find<QDateEdit>("dtMultiStop")->setDate(QDate(2012, 7, day));
        window.click("cmdAdd2List");
    }
    auto* list = window.find<QTreeWidget>("List1");
    EXPECT_EQ(list->columnWidth(0), 130);
    EXPECT_EQ(list->headerItem()->text(1).toStdString(), "Stop Date:");
    ASSERT_EQ(list->topLevelItemCount(), 3);
    list->setCurrentItem(list->topLevelItem(1));
    window.click("cmdDelList");
    ASSERT_EQ(list->topLevelItemCount(), 2);
    EXPECT_EQ(list->topLevelItem(1)->text(0).toStdString(), "7/7/2012");
    window.click("cmdOK");
    ASSERT_THAT(window.desk.written(), SizeIs(3));
    EXPECT_THAT(window.desk.written()[1], HasSubstr("#2012-07-05T17:00:00#"));
    EXPECT_THAT(window.desk.written()[2], HasSubstr("#2012-07-07T17:00:00#"));
}

TEST(frmOvrSchedule, TheFocusNeverFallsOnDeleteByItself) {
    Window window;
    QApplication::setActiveWindow(&window.desk.form());
    window.find<QSlider>("Slider1")->setFocus();
    window.find<QTabBar>("Tab1")->setCurrentIndex(1);
    EXPECT_EQ(window.desk.form().focusWidget(), window.find<QDateEdit>("dtMultiStart"));
    window.find<QTabBar>("Tab1")->setCurrentIndex(0);
    EXPECT_EQ(window.desk.form().focusWidget(), window.find<QSlider>("Slider1"));
    window.find<QSlider>("Slider2")->setValue(0);
    window.click("cmdOK");
    EXPECT_EQ(window.desk.form().focusWidget(), window.find<QPushButton>("cmdErrOK"));
}

TEST(frmOvrSchedule, AnExistingScheduleHasNoAdditionalDays) {
    Window window(0, 2);
    window.click("cmdNext");
    EXPECT_EQ(window.title(), "1 of 2   Scheduled Override");
    window.find<QTabBar>("Tab1")->setCurrentIndex(1);
    EXPECT_EQ(window.find<QTabBar>("Tab1")->currentIndex(), 0);
    EXPECT_TRUE(window.find<QWidget>("Frame_0")->isVisible());
}

TEST(frmOvrSchedule, BrowsingFromAdditionalDaysToAnExistingScheduleGoesBackToGeneral) {
    Window window(0, 2);
    window.find<QTabBar>("Tab1")->setCurrentIndex(1);
    window.click("cmdNext");
    EXPECT_EQ(window.find<QTabBar>("Tab1")->currentIndex(), 0);
    EXPECT_TRUE(window.find<QWidget>("Frame_0")->isVisible());
    EXPECT_EQ(window.text("Label_5"), "12:00:00 PM");
    EXPECT_EQ(window.text("Label_6"), "3:00:00 PM");
}

TEST(frmOvrSchedule, ACaptionIsHighlightedWhileItsControlHasTheFocus) {
    Window window;
    QLabel* caption = window.find<QLabel>("Label_1");
    auto* slider = window.find<QSlider>("Slider1");
    EXPECT_EQ(caption->foregroundRole(), QPalette::WindowText);
    QFocusEvent in(QEvent::FocusIn);
    QCoreApplication::sendEvent(slider, &in);
    EXPECT_EQ(caption->foregroundRole(), QPalette::HighlightedText);
    EXPECT_EQ(caption->backgroundRole(), QPalette::Highlight);
    QFocusEvent out(QEvent::FocusOut);
    QCoreApplication::sendEvent(slider, &out);
    EXPECT_EQ(caption->foregroundRole(), QPalette::WindowText);
    EXPECT_EQ(caption->backgroundRole(), QPalette::Button);
}

TEST(frmOvrSchedule, TextFromOutsideIsPlainText) {
    OverrideDesk desk;
    desk.passPoint();
    desk.form().LocName("<b>A</b> & B");
    desk.form().PointName("[*]");
    desk.form().OprName("<img src=x>\nAnn");
    desk.form().showEditor();
    EXPECT_EQ(desk.form().findChild<QTabBar*>(QStringLiteral("Tab1"))->tabText(0).toStdString(),
              "<b>A</b> && B:  [*]");
    auto* reader = desk.form().findChild<QLabel*>(QStringLiteral("Label_7"));
    EXPECT_EQ(reader->textFormat(), Qt::PlainText);
    EXPECT_THAT(reader->text().toStdString(), HasSubstr("<img src=x> Ann  "));
}

TEST(frmOvrSchedule, ComesToTheFrontTopmostFirstAndOrdinaryAfterwards) {
    Window window;
    bool answered = false;
    window.desk.form().bringToFront([&] { answered = true; });
    ASSERT_THAT(window.desk.windows.placed, SizeIs(1));
    EXPECT_EQ(window.desk.windows.placed[0].insertAfter, -1);
    EXPECT_EQ(window.desk.windows.placed[0].flags, 19U);
    EXPECT_TRUE(QTest::qWaitFor([&] { return answered; }));
    ASSERT_THAT(window.desk.windows.placed, SizeIs(2));
    EXPECT_EQ(window.desk.windows.placed[1].insertAfter, 0);
    EXPECT_EQ(window.desk.windows.placed[1].flags, 19U);
}

TEST(frmOvrSchedule, AWindowThatIsGoneDropsTheSecondRequest) {
    Window window;
    bool dropped = false;
    const QPointer<frmOvrSchedule> form = &window.desk.form();
    {
        const auto watch = std::shared_ptr<void>(nullptr, [&](void*) { dropped = true; });
        form->bringToFront([watch] {});
    }
    window.click("cmdCancel");
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.isNull(); }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return dropped; }));
    EXPECT_THAT(window.desk.windows.placed, SizeIs(1));
}

TEST(frmOvrSchedule, APointPassedToAnOpenWindowIsNotReloaded) {
    Window window(0, 2);
    window.click("cmdNext");
    window.desk.form().PointID(12);
    window.desk.form().PointName("Gate");
    window.desk.form().showEditor();
    EXPECT_EQ(window.title(), "1 of 2   Scheduled Override");
    EXPECT_EQ(window.find<QTabBar>("Tab1")->tabText(0).toStdString(), "Lisbon:  Dock door");
    EXPECT_EQ(window.text("lblNotice"), "OK saves what is shown for Gate at Lisbon.");
}

TEST(frmOvrSchedule, ClosedWhileAScheduleIsBeingShownItEndsQuietly) {
    for (const int pass : {1, 2}) {
        Window window(0, 2);
        const QPointer<frmOvrSchedule> form = &window.desk.form();
        int calls = 0;
        window.desk.server.application.onPendingMessages = [&] {
            if (++calls == pass) {
                form->close();
                EXPECT_FALSE(form.isNull()) << "its routine is still running";
            }
        };
        window.click("cmdNext");
        EXPECT_FALSE(window.isOpen());
        EXPECT_TRUE(window.desk.overrides.done().get());
        EXPECT_TRUE(QTest::qWaitFor([&] { return form.isNull(); }));
    }
}

TEST(frmOvrSchedule, ClosedWhileItLoadsItNeverShows) {
    OverrideDesk desk;
    desk.passPoint();
    const QPointer<frmOvrSchedule> form = &desk.form();
    desk.server.application.onPendingMessages = [&] { form->close(); };
    form->showEditor();
    ASSERT_FALSE(form.isNull());
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(desk.overrides.done().get());
    EXPECT_TRUE(QTest::qWaitFor([&] { return form.isNull(); }));
}

TEST(frmOvrSchedule, APressWhileAScheduleIsBeingShownWaitsForItsEnd) {
    Window window(0, 3);
    bool pressed = false;
    window.desk.server.application.onPendingMessages = [&] {
        if (!std::exchange(pressed, true)) {
            window.click("cmdNext");
        }
    };
    window.click("cmdNext");
    EXPECT_EQ(window.title(), "2 of 3   Scheduled Override");
}

} // namespace
} // namespace kintar

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
