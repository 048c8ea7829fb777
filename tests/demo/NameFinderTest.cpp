#include "demo/NameFinder.h"

#include "FakeServer.h"

#include <gtest/gtest.h>

namespace kintar::demo {
namespace {

using testing::FakeServer;
using testing::PrivateBus;
using testing::waitFor;

const QString object = QStringLiteral("/net/tarnholm/Kintar3/objNameSearch/1");

class NameFinderTest : public ::testing::Test {
protected:
    NameFinderTest() {
        server.appear();
        QObject::connect(&finder, &NameFinder::found, [this](int person, const QString& name) {
            found.append(QStringLiteral("%1 %2").arg(person).arg(name));
        });
        QObject::connect(&finder, &NameFinder::cancelled, [this] { ++cancelled; });
        QObject::connect(&finder, &NameFinder::refused,
                         [this](const QString& reason) { refused = reason; });
    }

    void find() { finder.find(3, QStringLiteral("Office"), 4); }
    bool opened(int times = 1) {
        return waitFor(
            [this, times] { return server.log.count(QStringLiteral("LocGrp=3")) == times; });
    }
    void close(int id, const QString& name) {
        server.result = {{QStringLiteral("SelNameID"), id}, {QStringLiteral("SelName"), name}};
        server.change(object, QStringLiteral("objNameSearch"),
                      {{QStringLiteral("SelNameReady"), true}});
    }

    PrivateBus bus;
    FakeServer server{bus.connect()};
    NameFinder finder{bus.connect()};
    QStringList found;
    int cancelled = 0;
    QString refused;
};

TEST_F(NameFinderTest, SetsTheGroupLastAndTellsTheNameChosen) {
    find();
    ASSERT_TRUE(opened());
    EXPECT_EQ(server.log,
              (QStringList{QStringLiteral("create objNameSearch"), QStringLiteral("LocName=Office"),
                           QStringLiteral("OprID=4"), QStringLiteral("NameSelMode=1"),
                           QStringLiteral("LocGrp=3")}));
    close(30, QStringLiteral("Moss, Kate"));
    ASSERT_TRUE(waitFor([this] { return !found.isEmpty(); }));
    EXPECT_EQ(found, QStringList{QStringLiteral("30 Moss, Kate")});
    EXPECT_EQ(cancelled, 0);
}

TEST_F(NameFinderTest, TellsThatNobodyWasChosen) {
    find();
    ASSERT_TRUE(opened());
    close(0, {});
    EXPECT_TRUE(waitFor([this] { return cancelled == 1; }));
    EXPECT_TRUE(found.isEmpty());
}

TEST_F(NameFinderTest, KeepsItsObjectForTheNextTime) {
    find();
    ASSERT_TRUE(opened());
    close(0, {});
    ASSERT_TRUE(waitFor([this] { return cancelled == 1; }));
    find();
    ASSERT_TRUE(opened(2));
    EXPECT_EQ(server.log.count(QStringLiteral("create objNameSearch")), 1);
}

TEST_F(NameFinderTest, ADialogThatNobodyHereOpenedTellsNothing) {
    find();
    ASSERT_TRUE(opened());
    close(30, QStringLiteral("Moss, Kate"));
    ASSERT_TRUE(waitFor([this] { return found.size() == 1; }));
    close(31, QStringLiteral("Abel, Tom")); // another client's, and then our own
    find();
    ASSERT_TRUE(opened(2));
    close(0, {});
    ASSERT_TRUE(waitFor([this] { return cancelled == 1; }));
    EXPECT_EQ(found.size(), 1);
}

TEST_F(NameFinderTest, BrowsingTellsNobodysName) {
    finder.browse(3, QStringLiteral("Office"), 4);
    ASSERT_TRUE(opened());
    EXPECT_TRUE(server.log.contains(QStringLiteral("NameSelMode=0")));
    close(30, QStringLiteral("Moss, Kate")); // whom In/Out leaves from an earlier search
    find();
    ASSERT_TRUE(opened(2));
    close(0, {});
    ASSERT_TRUE(waitFor([this] { return cancelled == 1; }));
    EXPECT_TRUE(found.isEmpty());
}

TEST_F(NameFinderTest, ARefusalIsTold) {
    server.refused = QStringLiteral("LocGrp");
    find();
    ASSERT_TRUE(waitFor([this] { return !refused.isEmpty(); }));
    EXPECT_EQ(refused, QStringLiteral("Run-time error '13': Type mismatch"));
}

} // namespace
} // namespace kintar::demo
