#include "platform/qt/Controls.h"

#include "platform/qt/ElidedLabel.h"
#include "platform/qt/QtWindowRequests.h"

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::platform {
namespace {

using ::testing::ElementsAre;

TEST(Controls, CarryTheirNamesForThoseWhoReadWindows) {
    QWidget window;
    QLabel label(&window);
    nameControl(label, "Label_1", "label", QStringLiteral("Time and event"));
    EXPECT_EQ(label.objectName(), QStringLiteral("Label_1"));
    EXPECT_EQ(label.accessibleName(), QStringLiteral("Time and event"));
    EXPECT_EQ(label.accessibleDescription(), QStringLiteral("Label_1"));
}

TEST(Controls, AreListedWithWhatAReaderIsTold) {
    QWidget window;
    QLabel label(QStringLiteral("5:05:00 PM"), &window);
    QLabel unnamed(&window);
    QTimer timer(&window);
    nameControl(timer, "Timer1", "timer");
    nameControl(label, "Label_1", "label", QStringLiteral("Time"));
    EXPECT_THAT(
        controlsOf(window),
        ElementsAre(ControlInfo{"Label_1", "label", "Time", "label", "5:05:00 PM", true, true},
                    ControlInfo{"Timer1", "timer", "", "", "", false, false}));
}

TEST(Controls, SayWhatIsHiddenOrDisabledAtTheStart) {
    QWidget window;
    QFrame frame(&window);
    QPushButton hiddenWithItsFrame(QStringLiteral("&OK"), &frame);
    QPushButton disabled(QStringLiteral("In/Out"), &window);
    nameControl(hiddenWithItsFrame, "cmdOK", "button", QString());
    nameControl(disabled, "cmdInOut", "button", QString());
    frame.hide();
    disabled.setEnabled(false);
    EXPECT_THAT(controlsOf(window),
                ElementsAre(ControlInfo{"cmdOK", "button", "OK", "push button", "OK", false, true},
                            ControlInfo{"cmdInOut", "button", "In/Out", "push button", "In/Out",
                                        true, false}));
}

TEST(Controls, AStripOfTabsReadsAsItsCaptions) {
    QWidget window;
    QTabBar tabs(&window);
    tabs.addTab(QStringLiteral("General"));
    tabs.addTab(QStringLiteral("Additional &Days"));
    nameControl(tabs, "Tab1", "tab strip", QString());
    EXPECT_EQ(controlsOf(window).front().text, "General, Additional Days");
}

TEST(ElidedLabel, KeepsTheWholeTextForReadersAndTheTooltip) {
    ElidedLabel label(nullptr);
    label.resize(30, 20);
    label.setLine("A very long line of text\nthat does not fit");
    EXPECT_EQ(label.text(), QStringLiteral("A very long line of text that does not fit"));
    EXPECT_EQ(label.accessibleName(), label.text());
    EXPECT_EQ(label.toolTip(),
              QStringLiteral("<span>A very long line of text that does not fit</span>"));
}

TEST(ElidedLabel, TellsOfADoubleClickOfTheLeftButtonOnly) {
    ElidedLabel label(nullptr);
    int clicks = 0;
    label.onDoubleClick([&] { ++clicks; });
    QTest::mouseDClick(&label, Qt::RightButton);
    EXPECT_EQ(clicks, 0);
    QTest::mouseDClick(&label, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
}

TEST(QtWindowRequests, SaysOnceWhatThisPlatformCannotDo) {
    QWidget window;
    window.show();
    QtWindowRequests requests;
    ::testing::internal::CaptureStderr();
    for (int i = 0; i < 3; ++i) {
        requests.SetWindowPos(window.winId(), InsertAfter::Topmost, 19);
        requests.SetForegroundWindow(12345);
    }
    const std::string said = ::testing::internal::GetCapturedStderr();
    const std::string ours = "kintar3: on this platform (offscreen) windows are raised, but cannot "
                             "be kept above others\n";
    EXPECT_NE(said.find(ours), std::string::npos) << said;
    EXPECT_EQ(said.find("kintar3:"), said.rfind("kintar3:")) << said;
}

} // namespace
} // namespace kintar::platform
