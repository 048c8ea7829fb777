#include "demo/ActionsBar.h"

#include "FakeServer.h"

#include <gtest/gtest.h>

namespace kintar::demo {
namespace {

using testing::FakeServer;
using testing::PrivateBus;
using testing::waitFor;

class ActionsBarTest : public ::testing::Test {
protected:
    ActionsBarTest() {
        server.appear();
        QObject::connect(&bar, &ActionsBar::said, [this](const QString& text) { said << text; });
    }
    bool asked(const QString& member) {
        return waitFor([&] { return server.log.contains(member); });
    }
    /// What is said once the server has told the end of a request.
    QString ended(short request, const QString& error) {
        said.clear();
        server.tell(QStringLiteral("/net/tarnholm/Kintar3/objNameSearch/1"),
                    QStringLiteral("objNameSearch"), QStringLiteral("PrintEnded"),
                    {QVariant::fromValue(request), error});
        return waitFor([this] { return !said.isEmpty(); }) ? said.first() : QString();
    }

    PrivateBus bus;
    FakeServer server{bus.connect()};
    ActionsBar bar{bus.connect(), [] { return ActionPlace{31, QStringLiteral("North")}; }};
    QStringList said;
};

TEST_F(ActionsBarTest, SetsAnAlarmsTextLast) {
    bar.announceAlarm();
    ASSERT_TRUE(waitFor([this] { return server.log.size() == 5; }));
    EXPECT_EQ(server.log.at(0), QStringLiteral("create objAlarmPopUp"));
    EXPECT_EQ(server.log.at(3), QStringLiteral("LocName=North"));
    EXPECT_EQ(server.log.at(4), QStringLiteral("EventString=Door forced open: Loading Dock"));
}

TEST_F(ActionsBarTest, SaysWhatWasAskedForAndHowItEnded) {
    bar.printWhoIsIn();
    EXPECT_EQ(said, QStringList{QStringLiteral("Asked for the list of who is in at North")});
    ASSERT_TRUE(asked(QStringLiteral("PrintWhoIsIn")));
    EXPECT_EQ(ended(2, {}), QStringLiteral("The list of who is in has been sent to the printer"));
    bar.printStatus();
    ASSERT_TRUE(asked(QStringLiteral("PrintStatus")));
    EXPECT_EQ(ended(1, QStringLiteral("There is no printer.")),
              QStringLiteral("The card status report was not printed: There is no printer."));
}

} // namespace
} // namespace kintar::demo
