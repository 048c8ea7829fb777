// What becomes of statements when the server does.
#include "companion/SiteFolder.h"
#include "companion/postgres/PostgresConnection.h"
#include "companion/postgres/ServerWatch.h"
#include "support/PrivateCluster.h"

#include <algorithm>
#include <arpa/inet.h>
#include <condition_variable>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kintar::companion::postgres {
namespace {

using std::chrono::milliseconds;

std::optional<ErrorKind> kindOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const DatabaseError& error) {
        return error.kind();
    }
    return std::nullopt;
}

/// A server of these tests' own, since they end it.
testing::PrivateCluster& cluster() {
    static testing::PrivateCluster own;
    return own;
}

class PostgresFaults : public ::testing::Test {
protected:
    [[nodiscard]] std::string ask(const std::string& sql) const {
        return testing::askServer(site.database(), sql);
    }
    void awaitAnswer(const std::string& sql, const std::string& answer) const {
        while (ask(sql) != answer) {
            poll(nullptr, 0, 10);
        }
    }
    /// The standby that every change waits for. Sessions learn of a mere reload one by one.
    void setStandby(const std::string& name) const {
        testing::runOnServer(site.database(),
                             "ALTER SYSTEM SET synchronous_standby_names = '" + name + "'");
        cluster().stop();
        cluster().start();
    }
    /// Starts a change and ends the server while it waits for something; what it threw.
    std::optional<ErrorKind> changeInterruptedAt(const std::string& waitsFor) {
        auto changed = std::async(std::launch::async, [&] {
            return kindOf([&] { connection.execute("INSERT INTO IO (ID, Loc) VALUES (99, 1)"); });
        });
        awaitAnswer("SELECT count(*) FROM pg_stat_activity WHERE wait_event = '" + waitsFor + "'",
                    "1");
        cluster().kill();
        const auto kind = changed.get();
        cluster().start();
        return kind;
    }

    SiteFolder site{cluster()};
    Limits hasty{milliseconds(2000), milliseconds(20000)};
    PostgresConnection connection{site.database(), DatabaseAccess::ReadWrite, hasty};
};

TEST_F(PostgresFaults, AReadGoesOnAfterTheServerHasRestarted) {
    for (const bool hard : {false, true}) {
        EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 1U);
        hard ? cluster().kill() : cluster().stop();
        cluster().start();
        EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 1U);
        EXPECT_EQ(connection.open("SELECT Loc FROM IO WHERE ID = 12").RecordCount(), 1U);
    }
}

TEST_F(PostgresFaults, AChangeGoesOnAfterTheServerHasRestartedAndIsMadeOnce) {
    connection.execute("INSERT INTO IO (ID, Loc) VALUES (97, 1)");
    cluster().kill();
    cluster().start();
    connection.execute("INSERT INTO IO (ID, Loc) VALUES (98, 1)");
    EXPECT_EQ(ask("SELECT count(*) FROM IO WHERE ID IN (97, 98)"), "2");
}

TEST_F(PostgresFaults, WhileTheServerIsAwayStatementsFailAndTheConnectionStaysOpen) {
    connection.open("SELECT ID FROM IO");
    cluster().kill();
    EXPECT_EQ(kindOf([&] { connection.open("SELECT ID FROM IO"); }), ErrorKind::Unreachable);
    EXPECT_EQ(kindOf([&] { connection.execute("DELETE FROM IO"); }), ErrorKind::Unreachable);
    EXPECT_TRUE(connection.isOpen());
    cluster().start();
    while (kindOf([&] { connection.open("SELECT ID FROM IO"); })) {
        poll(nullptr, 0, 50); // the pause between attempts to connect
    }
    EXPECT_EQ(ask("SELECT count(*) FROM IO"), "1") << "what failed was not done later";
}

TEST_F(PostgresFaults, AChangeThatMayHaveBeenMadeIsToldAsSuchAndNotRepeated) {
    // The server keeps it, and then waits for a standby that does not exist.
    setStandby("nobody");
    EXPECT_EQ(changeInterruptedAt("SyncRep"), ErrorKind::OutcomeUnknown);
    setStandby("");
    EXPECT_EQ(ask("SELECT count(*) FROM IO WHERE ID = 99"), "1");
}

TEST_F(PostgresFaults, AChangeThatNoStandbyHasConfirmedInTimeIsNoSuccess) {
    const Limits limits{milliseconds(2000), milliseconds(1000)};
    PostgresConnection impatient(site.database(), DatabaseAccess::ReadWrite, limits);
    setStandby("nobody");
    EXPECT_EQ(kindOf([&] { impatient.execute("INSERT INTO IO (ID, Loc) VALUES (99, 1)"); }),
              ErrorKind::OutcomeUnknown);
    setStandby("");
    EXPECT_EQ(ask("SELECT count(*) FROM IO WHERE ID = 99"), "1");
    impatient.execute("DELETE FROM IO WHERE ID = 99");
}

TEST_F(PostgresFaults, AChangeThatWasNotMadeIsToldTheSameWayAndNotRepeated) {
    // Prepared already, so that it waits while it is carried out.
    connection.execute("INSERT INTO IO (ID, Loc) VALUES (95, 1)");
    PostgresConnection holder(site.database(), DatabaseAccess::ReadWrite, hasty);
    holder.handle().run("BEGIN");
    holder.handle().run("LOCK TABLE io IN SHARE MODE");
    EXPECT_EQ(changeInterruptedAt("relation"), ErrorKind::OutcomeUnknown);
    EXPECT_EQ(ask("SELECT count(*) FROM IO WHERE ID = 99"), "0");
}

TEST_F(PostgresFaults, ASnapshotThatIsLostIsNotMadeOfTwoStates) {
    const auto snapshot = connection.Snapshot();
    connection.open("SELECT ID FROM IO");
    cluster().kill();
    cluster().start();
    EXPECT_EQ(kindOf([&] { connection.open("SELECT ID FROM IO"); }), ErrorKind::Unreachable);
    EXPECT_EQ(kindOf([&] { connection.open("SELECT ID FROM IO"); }), std::nullopt);
}

TEST_F(PostgresFaults, ASilentServerIsGivenUpInTime) {
    const Limits limits{milliseconds(2000), milliseconds(1000)};
    PostgresConnection impatient(site.database(), DatabaseAccess::ReadWrite, limits);
    impatient.execute("UPDATE IO SET Loc = 1");
    cluster().pause();
    EXPECT_EQ(kindOf([&] { impatient.open("SELECT ID FROM IO"); }), ErrorKind::TimedOut);
    EXPECT_EQ(kindOf([&] { impatient.open("SELECT ID FROM IO"); }), ErrorKind::Unreachable);
    cluster().resume();
    while (kindOf([&] { impatient.open("SELECT ID FROM IO"); })) {
        poll(nullptr, 0, 50);
    }
}

TEST_F(PostgresFaults, AChangeThatASilentServerMayHaveMadeIsToldAsSuch) {
    const Limits limits{milliseconds(2000), milliseconds(1000)};
    PostgresConnection impatient(site.database(), DatabaseAccess::ReadWrite, limits);
    impatient.execute("UPDATE IO SET Loc = 1 WHERE ID = 12");
    cluster().pause();
    EXPECT_EQ(kindOf([&] { impatient.execute("UPDATE IO SET Loc = 2 WHERE ID = 12"); }),
              ErrorKind::OutcomeUnknown);
    cluster().resume();
}

TEST_F(PostgresFaults, ASilentHostLeavesTheOthersTheirTime) {
    // A port that takes connections and says nothing.
    const int silent = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(bind(silent, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(silent, 1), 0);
    socklen_t size = sizeof address;
    getsockname(silent, reinterpret_cast<sockaddr*>(&address), &size);
    const std::string port = std::to_string(ntohs(address.sin_port));
    const std::string folder = site.database().substr(site.database().find("host=") + 5);
    const std::string name = ask("SELECT current_database()");
    PostgresConnection second("postgresql://kintar@/" + name + "?host=127.0.0.1," + folder +
                                  "&port=" + port + ",5432",
                              DatabaseAccess::ReadWrite, hasty);
    EXPECT_EQ(second.open("SELECT ID FROM IO").RecordCount(), 1U);
    close(silent);
}

TEST_F(PostgresFaults, AConnectionThatOnlyReadsTakesTheHostThatWrites) {
    PostgresConnection reading(site.database() + "&target_session_attrs=read-write",
                               DatabaseAccess::ReadOnly, hasty);
    EXPECT_EQ(reading.open("SELECT ID FROM IO").RecordCount(), 1U);
}

/// Waits until the watch has told so.
class Told {
public:
    void operator()(bool away) {
        const std::lock_guard lock(mutex_);
        states_.push_back(away);
        changed_.notify_all();
    }
    void await(bool away) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return !states_.empty() && states_.back() == away; });
    }
    [[nodiscard]] std::vector<bool> states() {
        const std::lock_guard lock(mutex_);
        return states_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<bool> states_;
};

TEST_F(PostgresFaults, TheWatchTellsThatTheServerIsAwayAndBack) {
    Told told;
    const ServerWatch watch(site.database(), std::ref(told),
                            {milliseconds(50), milliseconds(1000)});
    cluster().kill();
    told.await(true);
    EXPECT_TRUE(watch.away()->load());
    cluster().start();
    told.await(false);
    cluster().pause();
    told.await(true);
    cluster().resume();
    told.await(false);
    EXPECT_FALSE(watch.away()->load());
    const std::vector<bool> states = told.states();
    EXPECT_EQ(std::ranges::adjacent_find(states), states.end()) << "told twice";
}

TEST_F(PostgresFaults, AStatementEndsWhenTheServerIsKnownToBeAway) {
    const auto away = std::make_shared<std::atomic<bool>>(false);
    connection.failWhile(away);
    connection.open("SELECT ID FROM IO");
    cluster().pause();
    auto read = std::async(std::launch::async,
                           [&] { return kindOf([&] { connection.open("SELECT ID FROM IO"); }); });
    *away = true;
    EXPECT_EQ(read.get(), ErrorKind::Unreachable);
    EXPECT_EQ(kindOf([&] { connection.open("SELECT ID FROM IO"); }), ErrorKind::Unreachable);
    cluster().resume();
    *away = false;
    EXPECT_EQ(connection.open("SELECT ID FROM IO").RecordCount(), 1U);
}

} // namespace
} // namespace kintar::companion::postgres
