#include "demo/WorkstationWindow.h"

#include "Workstation.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <gtest/gtest.h>

namespace kintar::demo {
namespace {

using testing::waitFor;
using testing::Workstation;

class WorkstationWindowTest : public ::testing::Test {
protected:
    [[nodiscard]] QTableView& table() { return *workstation.window.findChild<QTableView*>(); }
    [[nodiscard]] QComboBox& operators() { return *workstation.window.findChild<QComboBox*>(); }
    QPushButton* button(const QString& accessibleName) {
        for (QPushButton* found : workstation.window.findChildren<QPushButton*>()) {
            if (found->accessibleName() == accessibleName) {
                return found;
            }
        }
        return nullptr;
    }
    bool loaded() {
        workstation.feed.load();
        return waitFor([this] { return operators().count() == 2; });
    }

    Workstation workstation;
};

TEST_F(WorkstationWindowTest, PlaysTheFirstEventOfTheFeedAtOnce) {
    ASSERT_TRUE(loaded());
    EXPECT_EQ(table().model()->rowCount(), 1);
    EXPECT_TRUE(workstation.waitForProperty(QStringLiteral("ID=1")));
}

TEST_F(WorkstationWindowTest, PlaysNothingWhilePaused) {
    workstation.window.setPaused(true);
    ASSERT_TRUE(loaded());
    EXPECT_EQ(table().model()->rowCount(), 0);
}

TEST_F(WorkstationWindowTest, RenamesThePauseButton) {
    ASSERT_NE(button(QStringLiteral("Pause feed")), nullptr);
    button(QStringLiteral("Pause feed"))->click();
    ASSERT_NE(button(QStringLiteral("Resume feed")), nullptr);
    button(QStringLiteral("Resume feed"))->click();
    EXPECT_NE(button(QStringLiteral("Pause feed")), nullptr);
}

TEST_F(WorkstationWindowTest, ShowsAPhotoAgainByKeyAndByButton) {
    ASSERT_TRUE(loaded());
    ASSERT_TRUE(workstation.waitForProperty(QStringLiteral("ID=1")));
    QPushButton* show = button(QStringLiteral("Show photo"));
    EXPECT_FALSE(show->isEnabled());
    workstation.server.log.clear();
    table().selectRow(0);
    EXPECT_TRUE(show->isEnabled());
    show->click();
    ASSERT_TRUE(workstation.waitForProperty(QStringLiteral("ID=1")));
    workstation.server.log.clear();
    table().actions().constFirst()->trigger();
    EXPECT_TRUE(workstation.waitForProperty(QStringLiteral("ID=1")));
}

TEST_F(WorkstationWindowTest, TellsTheServerWhichOperatorIsWorking) {
    ASSERT_TRUE(loaded());
    ASSERT_TRUE(workstation.waitForProperty(QStringLiteral("OprID=1")));
    EXPECT_FALSE(workstation.window.chooseOperator(99));
    EXPECT_TRUE(workstation.window.chooseOperator(5));
    EXPECT_TRUE(workstation.window.choosePerson(1));
    EXPECT_TRUE(workstation.waitForProperty(QStringLiteral("OprID=5")));
}

TEST_F(WorkstationWindowTest, FindsNobodyWhoHasNoEvent) {
    ASSERT_TRUE(loaded());
    EXPECT_FALSE(workstation.window.choosePerson(2));
}

TEST_F(WorkstationWindowTest, NamesEveryControlForAScreenReader) {
    EXPECT_FALSE(table().accessibleName().isEmpty());
    EXPECT_FALSE(operators().accessibleName().isEmpty());
    const QList<QPushButton*> buttons = workstation.window.findChildren<QPushButton*>();
    EXPECT_EQ(buttons.size(), 4);
    for (const QPushButton* found : buttons) {
        EXPECT_FALSE(found->accessibleName().isEmpty()) << found->text().toStdString();
    }
}

TEST_F(WorkstationWindowTest, SaysHowTheConnectionIs) {
    ASSERT_TRUE(waitFor([this] { return workstation.link.state() == ServerLink::State::Ready; }));
    QLabel* state = nullptr;
    for (QLabel* label : workstation.window.findChildren<QLabel*>()) {
        state = label->accessibleName() == QStringLiteral("Connection") ? label : state;
    }
    ASSERT_NE(state, nullptr);
    EXPECT_TRUE(state->text().startsWith(QStringLiteral("Connected to the server")));
    workstation.server.vanish();
    EXPECT_TRUE(
        waitFor([&] { return state->text().startsWith(QStringLiteral("The server has gone")); }));
}

} // namespace
} // namespace kintar::demo
