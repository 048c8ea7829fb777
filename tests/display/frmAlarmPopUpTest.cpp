#include "display/frmAlarmPopUp.h"

#include "display/AlarmColour.h"
#include "platform/qt/Controls.h"
#include "support/FakeServer.h"
#include "support/FakeSettings.h"
#include "support/RecordingWindowRequests.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTimerEvent>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct AlarmRoom {
    testing::FakeServer server;
    testing::RecordingWindowRequests requests;
    testing::FakeSettings settings;
    DefaultInstance<frmAlarmPopUp> place{[this] {
        auto form = platform::FormWindow::make<frmAlarmPopUp>(server.globals, requests, settings);
        form->onClose([this] { place.unload(); });
        return form;
    }};

    frmAlarmPopUp& announce(const std::string& text) {
        frmAlarmPopUp& form = place.get();
        form.setAlarm(text);
        form.show();
        form.setForeColor(0x000000C0);
        form.setCaption("Alarm  North");
        form.makeTopmost();
        return form;
    }
    template <class Control>
    Control& control(const char* name) {
        return *place.get().findChild<Control*>(QLatin1String(name));
    }
    /// As if a second had passed since the alarm.
    void passGuard() {
        auto& timer = control<QTimer>("keyGuard");
        QTimerEvent tick(timer.timerId());
        QCoreApplication::sendEvent(&timer, &tick);
    }
};

TEST(frmAlarmPopUpTest, HasItsControlsWithTheirCaptions) {
    AlarmRoom room;
    EXPECT_EQ(room.control<QCheckBox>("chkDisAblePopUp").text(),
              QStringLiteral("Disable The Alarm Pop Up Window (This Window)"));
    EXPECT_EQ(room.control<QPushButton>("cmdSwitch").text(), QStringLiteral("Go To WorkStation "));
    EXPECT_EQ(room.control<QPushButton>("cmdIgnore").text(), QStringLiteral("Ignore"));
    EXPECT_EQ(platform::controlsOf(room.place.get()).size(), 4U);
}

TEST(frmAlarmPopUpTest, ShowsOnlyTheLatestOfTwoAlarmsInTheWindowThatIsOpen) {
    AlarmRoom room;
    const frmAlarmPopUp* first = &room.announce("Door forced");
    const frmAlarmPopUp* second = &room.announce("Fire");
    EXPECT_EQ(first, second);
    EXPECT_EQ(room.control<QLabel>("Label_1").text(), QStringLiteral("Fire"));
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(second->windowTitle(), QStringLiteral("Alarm  North"));
}

TEST(frmAlarmPopUpTest, ShowsTheLatestOfAThousandAlarmsInOneWindow) {
    AlarmRoom room;
    const frmAlarmPopUp* window = &room.announce("first");
    for (int number = 1; number <= 1000; ++number) {
        EXPECT_EQ(&room.announce("Alarm " + std::to_string(number)), window);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(room.control<QLabel>("Label_1").text(), QStringLiteral("Alarm 1000"));
    EXPECT_TRUE(room.control<QLabel>("Label_1").isVisible());
}

TEST(frmAlarmPopUpTest, LetsATextThatIsTooLongBeScrolledToItsEnd) {
    AlarmRoom room;
    const QSize before = room.announce("short").size();
    QString text;
    for (int line = 0; line < 60; ++line) {
        text += QStringLiteral("Door forced open at the loading dock, east side. ");
    }
    room.announce(text.toStdString());
    QCoreApplication::processEvents();
    const auto& label = room.control<QLabel>("Label_1");
    EXPECT_GE(label.height(), label.heightForWidth(label.width()));
    EXPECT_LE(label.width(), room.place.get().width());
    EXPECT_GT(label.height(), room.place.get().height());
    EXPECT_EQ(room.place.get().size(), before);
}

TEST(frmAlarmPopUpTest, IsPutAboveAllWindowsNeitherMovedNorSizedNorActivated) {
    AlarmRoom room;
    const frmAlarmPopUp& form = room.announce("Door forced");
    ASSERT_EQ(room.requests.placed.size(), 1U);
    EXPECT_EQ(room.requests.placed[0].insertAfter, -1);
    EXPECT_EQ(room.requests.placed[0].flags, 19U);
    EXPECT_EQ(room.requests.placed[0].window, static_cast<platform::WindowId>(form.winId()));
    EXPECT_TRUE(form.testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST(frmAlarmPopUpTest, PreparesItselfOnceForAllItsAlarms) {
    AlarmRoom room;
    room.announce("Door forced");
    room.announce("Fire");
    EXPECT_EQ(std::ranges::count(room.server.events, "PrepareForm frmAlarmPopUp"), 1);
}

TEST(frmAlarmPopUpTest, GivesTheTextExactlyTheClientsColourOnAReadableGround) {
    AlarmRoom room;
    frmAlarmPopUp& form = room.announce("Door forced");
    for (const std::int32_t colour : {0x0000FF, 0x00FFFF, 0xFFFFFF, 0x000000, 0x808080}) {
        form.setForeColor(colour);
        const QPalette& palette = room.control<QLabel>("Label_1").palette();
        const display::Rgb expected = display::colourOf(colour);
        const QColor text = palette.color(QPalette::WindowText);
        EXPECT_EQ(text, QColor(expected.red, expected.green, expected.blue));
        const QColor ground = palette.color(QPalette::Window);
        EXPECT_GE(display::contrast(expected, {static_cast<std::uint8_t>(ground.red()),
                                               static_cast<std::uint8_t>(ground.green()),
                                               static_cast<std::uint8_t>(ground.blue())}),
                  4.5);
    }
}

TEST(frmAlarmPopUpTest, TakesANegativeColourForASystemColour) {
    AlarmRoom room;
    frmAlarmPopUp& form = room.announce("Door forced");
    form.setForeColor(std::numeric_limits<std::int32_t>::min() + 13);
    EXPECT_EQ(room.control<QLabel>("Label_1").palette().color(QPalette::WindowText),
              QGuiApplication::palette().color(QPalette::Active, QPalette::Highlight));
}

TEST(frmAlarmPopUpTest, HidesAtIgnoreAndStaysLoaded) {
    AlarmRoom room;
    frmAlarmPopUp& form = room.announce("Door forced");
    room.control<QPushButton>("cmdIgnore").click();
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(room.place.exists());
    EXPECT_EQ(&room.announce("Fire"), &form);
    EXPECT_TRUE(form.isVisible());
}

TEST(frmAlarmPopUpTest, WritesZeroAndHidesWhenTheBoxIsTicked) {
    AlarmRoom room;
    frmAlarmPopUp& form = room.announce("Door forced");
    room.control<QCheckBox>("chkDisAblePopUp").click();
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(form.disableTicked());
    EXPECT_EQ(room.settings.get(R"(Orvane\WS\Settings)", "AlarmPopUp", "unset"), "0");
}

TEST(frmAlarmPopUpTest, SavesNothingWhenTheBoxIsUnticked) {
    AlarmRoom room;
    room.announce("Door forced");
    room.control<QCheckBox>("chkDisAblePopUp").click();
    room.settings.save(R"(Orvane\WS\Settings)", "AlarmPopUp", "1");
    frmAlarmPopUp& form = room.announce("Fire");
    room.control<QCheckBox>("chkDisAblePopUp").click();
    EXPECT_EQ(room.settings.get(R"(Orvane\WS\Settings)", "AlarmPopUp", "unset"), "1");
    EXPECT_TRUE(form.isVisible());
    EXPECT_FALSE(form.disableTicked());
}

TEST(frmAlarmPopUpTest, HasTheBoxUntickedAgainAfterAnUnload) {
    AlarmRoom room;
    room.announce("Door forced");
    room.control<QCheckBox>("chkDisAblePopUp").click();
    EXPECT_TRUE(room.place.get().disableTicked());
    room.place.unload();
    EXPECT_FALSE(room.place.exists());
    EXPECT_FALSE(room.place.get().disableTicked());
}

TEST(frmAlarmPopUpTest, SwitchesToTheWorkstationInThreeRequestsAndHides) {
    AlarmRoom room;
    frmAlarmPopUp& form = room.announce("Door forced");
    form.WsHandle(-2);
    room.requests.placed.clear();
    room.control<QPushButton>("cmdSwitch").click();
    const platform::WindowId workstation = 0xFFFFFFFEU;
    ASSERT_EQ(room.requests.placed.size(), 1U);
    EXPECT_EQ(room.requests.placed[0],
              (testing::RecordingWindowRequests::Placed{workstation, 0, 67U}));
    EXPECT_THAT(room.requests.restored, ElementsAre(workstation));
    EXPECT_THAT(room.requests.foreground, ElementsAre(workstation));
    EXPECT_FALSE(form.isVisible());
}

TEST(frmAlarmPopUpTest, IsNeitherDismissedNorSwitchedOffByAKeyAtTheMomentItAppears) {
    AlarmRoom room;
    frmAlarmPopUp& form = room.announce("Door forced");
    for (const char* name : {"chkDisAblePopUp", "cmdSwitch", "cmdIgnore"}) {
        auto& target = room.control<QWidget>(name);
        target.setFocus();
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
            QTest::keyClick(&target, key);
            QTest::keyClick(&form, key);
        }
    }
    EXPECT_FALSE(form.close());
    EXPECT_TRUE(form.isVisible());
    EXPECT_FALSE(form.disableTicked());
    EXPECT_THAT(room.requests.foreground, IsEmpty());
}

TEST(frmAlarmPopUpTest, IsGuardedAgainByEachAlarm) {
    AlarmRoom room;
    room.announce("Door forced");
    room.passGuard();
    frmAlarmPopUp& form = room.announce("Fire");
    QTest::keyClick(&room.control<QWidget>("cmdIgnore"), Qt::Key_Space);
    EXPECT_TRUE(form.isVisible());
}

TEST(frmAlarmPopUpTest, ObeysKeysAfterTheGuardButNotHeldOnes) {
    AlarmRoom room;
    frmAlarmPopUp& form = room.announce("Door forced");
    room.passGuard();
    auto& ignore = room.control<QPushButton>("cmdIgnore");
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "), true);
    QKeyEvent released(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "));
    QCoreApplication::sendEvent(&ignore, &held);
    QCoreApplication::sendEvent(&ignore, &released);
    EXPECT_TRUE(form.isVisible());
    QTest::keyClick(&ignore, Qt::Key_Space);
    EXPECT_FALSE(form.isVisible());
}

TEST(frmAlarmPopUpTest, GivesNoControlTheFocusByItself) {
    AlarmRoom room;
    frmAlarmPopUp& form = room.announce("Door forced");
    room.control<QWidget>("cmdIgnore").setFocus();
    room.announce("Fire");
    EXPECT_EQ(form.focusWidget(), &form);
}

TEST(frmAlarmPopUpTest, ClosesByItsTitleBarAfterTheGuard) {
    AlarmRoom room;
    room.announce("Door forced");
    room.passGuard();
    EXPECT_TRUE(room.place.get().close());
    EXPECT_FALSE(room.place.exists());
}

TEST(frmAlarmPopUpTest, ShowsMarkupAsText) {
    AlarmRoom room;
    room.announce("<b>Door</b> & [*] forced\nGate 2");
    const auto& label = room.control<QLabel>("Label_1");
    EXPECT_EQ(label.text(), QStringLiteral("<b>Door</b> & [*] forced\nGate 2"));
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST(frmAlarmPopUpTest, IsNotLoadedByAStoredHandle) {
    AlarmRoom room;
    room.place.get().WsHandle(5);
    EXPECT_THAT(room.server.events, ::testing::Not(Contains("PrepareForm frmAlarmPopUp")));
}

} // namespace
} // namespace kintar

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
