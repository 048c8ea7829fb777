#include "demo/ServerLink.h"

#include "FakeServer.h"

#include <gtest/gtest.h>

namespace kintar::demo {
namespace {

using testing::FakeServer;
using testing::PrivateBus;
using testing::waitFor;

CardEvent eventOf(int id) {
    CardEvent event;
    event.id = id;
    event.locGrp = 3;
    event.locName = QStringLiteral("Office");
    event.firstName = QString::fromUtf8("ليلى");
    event.lastName = QStringLiteral("O'Brien");
    event.device = QStringLiteral("Gate");
    event.eventDesc = QStringLiteral("Access granted");
    event.code = QStringLiteral("0012");
    event.moment = QDateTime(QDate(2012, 3, 14), QTime(17, 5, 0));
    return event;
}

class ServerLinkTest : public ::testing::Test {
protected:
    ServerLinkTest() {
        link.setRetryDelay(10);
        QObject::connect(&link, &ServerLink::shown, [this](int id) { shown = id; });
        QObject::connect(&link, &ServerLink::refused,
                         [this](const QString& reason) { refused = reason; });
    }
    bool becomes(ServerLink::State state) {
        return waitFor([this, state] { return link.state() == state; });
    }

    PrivateBus bus;
    FakeServer server{bus.connect()};
    ServerLink link{bus.connect()};
    int shown = 0;
    QString refused;
};

TEST_F(ServerLinkTest, CreatesAPhotoObjectAndAsksForTheVersion) {
    server.appear();
    link.start();
    EXPECT_EQ(link.state(), ServerLink::State::Starting);
    EXPECT_TRUE(waitFor([this] { return link.stateText().endsWith(QStringLiteral("4.4.12")); }));
    EXPECT_EQ(link.state(), ServerLink::State::Ready);
    EXPECT_EQ(server.log.first(), QStringLiteral("create objKintar"));
}

TEST_F(ServerLinkTest, SetsEveryPropertyBeforeTheOneThatTriggers) {
    server.appear();
    link.start();
    ASSERT_TRUE(becomes(ServerLink::State::Ready));
    server.log.clear();
    link.show(eventOf(7), 2);
    ASSERT_TRUE(waitFor([this] { return shown == 7; }));
    const QStringList expected{
        QStringLiteral("LocGrp=3"),
        QStringLiteral("LocName=Office"),
        QString::fromUtf8("FName=ليلى"),
        QStringLiteral("LName=O'Brien"),
        QStringLiteral("Device=Gate"),
        QStringLiteral("EventDesc=Access granted"),
        QStringLiteral("DateTime=2012-03-14T17:05:00"),
        QStringLiteral("Code=0012"),
        QStringLiteral("OprID=2"),
        QStringLiteral("ID=7"),
    };
    EXPECT_EQ(server.log, expected);
}

TEST_F(ServerLinkTest, ShowsTheLatestEventOnceTheServerIsReady) {
    server.appear();
    link.start();
    link.show(eventOf(1), 1);
    link.show(eventOf(2), 1);
    ASSERT_TRUE(waitFor([this] { return shown != 0; }));
    EXPECT_EQ(shown, 2);
    EXPECT_FALSE(server.log.contains(QStringLiteral("ID=1")));
}

TEST_F(ServerLinkTest, SaysThatThereIsNoServerAndTriesAgain) {
    link.start();
    ASSERT_TRUE(becomes(ServerLink::State::Gone));
    EXPECT_TRUE(link.stateText().startsWith(QStringLiteral("No connection to the server: ")));
    server.appear();
    EXPECT_TRUE(becomes(ServerLink::State::Ready));
}

TEST_F(ServerLinkTest, ComesBackAfterTheServerHasGone) {
    server.appear();
    link.start();
    ASSERT_TRUE(becomes(ServerLink::State::Ready));
    server.vanish();
    ASSERT_TRUE(becomes(ServerLink::State::Gone));
    link.show(eventOf(9), 1);
    server.appear();
    ASSERT_TRUE(waitFor([this] { return shown == 9; }));
    EXPECT_EQ(server.log.count(QStringLiteral("create objKintar")), 2);
}

TEST_F(ServerLinkTest, SaysWhatTheServerRefused) {
    server.appear();
    server.refused = QStringLiteral("DateTime");
    link.start();
    link.show(eventOf(7), 2);
    ASSERT_TRUE(waitFor([this] { return shown == 7; }));
    EXPECT_EQ(refused, QStringLiteral("DateTime: Run-time error '13': Type mismatch"));
}

TEST(ServerLink, ReleasesItsObjectWhenItEnds) {
    PrivateBus bus;
    FakeServer server(bus.connect());
    server.appear();
    {
        ServerLink link(bus.connect());
        link.start();
        ASSERT_TRUE(waitFor([&] { return link.state() == ServerLink::State::Ready; }));
    }
    EXPECT_TRUE(waitFor([&] {
        return server.log.contains(QStringLiteral("release /net/tarnholm/Kintar3/objKintar/1"));
    }));
}

TEST(ServerLink, SaysThatThereIsNoBus) {
    ServerLink link(QDBusConnection(QStringLiteral("never connected")));
    link.start();
    EXPECT_EQ(link.state(), ServerLink::State::Gone);
    EXPECT_EQ(link.stateText(), QStringLiteral("There is no session bus"));
}

} // namespace
} // namespace kintar::demo
