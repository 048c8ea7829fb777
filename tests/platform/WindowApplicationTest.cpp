#include "platform/qt/WindowApplication.h"

#include "support/Environment.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

namespace kintar::platform {
namespace {

using testing::Environment;

class WindowApplicationTest : public ::testing::Test {
protected:
    /// Looks at the open message box from the event loop, then presses its button.
    void withBox(const std::function<void(QMessageBox&)>& look) {
        QTimer::singleShot(0, [look] {
            for (QWidget* window : QApplication::topLevelWidgets()) {
                if (auto* box = qobject_cast<QMessageBox*>(window); box && box->isVisible()) {
                    look(*box);
                    box->button(QMessageBox::Ok)->click();
                }
            }
        });
    }

    WindowApplication application;
};

TEST_F(WindowApplicationTest, IsInTheFolderThatTheEnvironmentNames) {
    const Environment folder("KINTAR3_APP_DIR", "/srv/site/");
    EXPECT_EQ(application.folder(), "/srv/site");
}

TEST_F(WindowApplicationTest, IsInTheExecutablesFolderOtherwise) {
    const Environment folder("KINTAR3_APP_DIR", std::nullopt);
    EXPECT_EQ(application.folder(), QCoreApplication::applicationDirPath().toStdString());
    EXPECT_NE(application.folder().back(), '/');
}

TEST_F(WindowApplicationTest, HasItsVersion) {
    const Application::Version version = application.version();
    EXPECT_EQ(version.major, 4);
    EXPECT_EQ(version.minor, 4);
    EXPECT_EQ(version.revision, 12);
}

TEST_F(WindowApplicationTest, KeepsTheHelpFile) {
    application.setHelpFile("/site/AcsHelp.chm");
    EXPECT_EQ(application.helpFile(), "/site/AcsHelp.chm");
}

TEST_F(WindowApplicationTest, ShowsABoxWithOneButtonUnderItsTitle) {
    QWidget other;
    other.show();
    bool looked = false;
    withBox([&](QMessageBox& box) {
        looked = true;
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Kintar3"));
        EXPECT_EQ(box.text(), QStringLiteral("TarnSys Create Routine <b>Failed</b>"));
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.buttons().size(), 1);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "other windows are blocked";
    });
    application.messageBox("TarnSys Create Routine <b>Failed</b>");
    EXPECT_TRUE(looked);
}

TEST_F(WindowApplicationTest, ServesTheEventLoopWhileTheBoxIsOpen) {
    bool served = false;
    QTimer::singleShot(0, [&] { served = true; });
    withBox([&](QMessageBox&) { EXPECT_TRUE(served); });
    application.messageBox("text");
}

TEST_F(WindowApplicationTest, RunsPendingMessagesBetweenItsGates) {
    std::string order;
    application.setPendingMessagesGate([&] { order += "closed "; }, [&] { order += "open "; });
    QTimer::singleShot(0, [&] {
        order += "timer ";
        application.runPendingWindowMessages();
    });
    application.runPendingWindowMessages();
    EXPECT_EQ(order, "closed timer open ");
}

} // namespace
} // namespace kintar::platform
