#include "demo/Scenario.h"

#include "Workstation.h"

#include <gtest/gtest.h>

#include <array>

#include <unistd.h>

namespace kintar::demo {
namespace {

using testing::waitFor;
using testing::Workstation;

class ScenarioTest : public ::testing::Test {
protected:
    ScenarioTest() {
        workstation.window.setPaused(true);
        workstation.feed.load();
        scenario.setOutput([this](const QString& line) { printed.append(line); });
        QObject::connect(&scenario, &Scenario::ended, [this](int result) { status = result; });
        bool loaded = false;
        const auto connection =
            QObject::connect(&workstation.feed, &Feed::loaded, [&loaded] { loaded = true; });
        EXPECT_TRUE(waitFor([&] { return loaded; }));
        QObject::disconnect(connection);
        EXPECT_EQ(::pipe(pipe.data()), 0);
        scenario.readFrom(pipe[0]);
    }
    ~ScenarioTest() override {
        closeInput();
        ::close(pipe[0]);
    }

    void give(const QByteArray& lines) {
        EXPECT_EQ(::write(pipe[1], lines.constData(), static_cast<std::size_t>(lines.size())),
                  lines.size());
    }
    void closeInput() {
        if (pipe[1] >= 0) {
            ::close(pipe[1]);
            pipe[1] = -1;
        }
    }
    bool ends() {
        return waitFor([this] { return status.has_value(); });
    }

    Workstation workstation;
    Scenario scenario{workstation.feed, workstation.link, workstation.window};
    std::array<int, 2> pipe{-1, -1};
    QStringList printed;
    std::optional<int> status;
};

TEST_F(ScenarioTest, DoesItsStepsInOrder) {
    give("# a remark\n\nwait-server\noperator 5\nevent 42\nchoose 42\nquit\n");
    ASSERT_TRUE(ends());
    EXPECT_EQ(printed,
              (QStringList{QStringLiteral("done wait-server"), QStringLiteral("done operator 5"),
                           QStringLiteral("done event 42"), QStringLiteral("done choose 42"),
                           QStringLiteral("done quit")}));
    EXPECT_EQ(status, 0);
    EXPECT_EQ(workstation.server.log.count(QStringLiteral("ID=42")), 2);
    EXPECT_EQ(workstation.server.log.count(QStringLiteral("OprID=5")), 2);
}

TEST_F(ScenarioTest, TakesStepsThatComeLaterAndInPieces) {
    give("wait-ser");
    give("ver\n");
    ASSERT_TRUE(waitFor([this] { return printed.size() == 1; }));
    give("pause\nresume\n");
    ASSERT_TRUE(waitFor([this] { return printed.size() == 3; }));
    EXPECT_FALSE(status.has_value());
}

TEST_F(ScenarioTest, EndsWithItsInput) {
    give("wait-server");
    closeInput();
    ASSERT_TRUE(ends());
    EXPECT_EQ(printed, QStringList{QStringLiteral("done wait-server")});
    EXPECT_EQ(status, 0);
}

TEST_F(ScenarioTest, EndsAtAStepThatCannotBeDone) {
    give("operator 99\nwait-server\n");
    ASSERT_TRUE(ends());
    EXPECT_EQ(printed,
              QStringList{QStringLiteral("failed operator 99: there is no such operator")});
    EXPECT_EQ(status, 1);
}

TEST_F(ScenarioTest, RefusesWhatIsNoStep) {
    give("dance\n");
    ASSERT_TRUE(ends());
    EXPECT_EQ(printed, QStringList{QStringLiteral("failed dance: it is no step")});
}

TEST_F(ScenarioTest, RefusesAnEventOfNobody) {
    give("event 100\n");
    ASSERT_TRUE(ends());
    EXPECT_EQ(printed, QStringList{QStringLiteral("failed event 100: no person 100")});
    EXPECT_EQ(status, 1);
}

TEST_F(ScenarioTest, EndsWhereTheServerRefusesAnEvent) {
    workstation.server.refused = QStringLiteral("ID");
    give("event 42\n");
    ASSERT_TRUE(ends());
    EXPECT_TRUE(printed.value(0).startsWith(QStringLiteral("failed event 42: ID: Run-time error")));
}

TEST_F(ScenarioTest, GivesUpAStepThatTakesTooLong) {
    workstation.server.vanish();
    ASSERT_TRUE(waitFor([this] { return workstation.link.state() != ServerLink::State::Ready; }));
    scenario.setTimeout(20);
    give("wait-server\n");
    ASSERT_TRUE(ends());
    EXPECT_EQ(printed, QStringList{QStringLiteral("failed wait-server: it took too long")});
}

} // namespace
} // namespace kintar::demo
