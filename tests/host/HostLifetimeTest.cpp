#include "host/ServedTest.h"

#include <fstream>
#include <sys/stat.h>

namespace kintar::host {

namespace {

class HostLifetimeTest : public ServedTest {
protected:
    // A server without any grace, started by the first call.
    void serveOnDemand() {
        pipe_ = bus.folder() + "/log";
        ASSERT_EQ(mkfifo(pipe_.c_str(), 0600), 0);
        bus.makeActivatable(busName, std::string(KINTAR_FAKE_SERVER) + " 0 4096 " + pipe_);
    }

    // Waits for the end of the server: what happened in it.
    [[nodiscard]] std::string logAtTheEnd() const {
        std::string line;
        std::getline(std::ifstream(pipe_), line);
        return line;
    }

private:
    std::string pipe_;
};

bool isServed(BusClient& client) {
    return sd_bus_get_name_creds(client.bus(), busName, 0, nullptr) >= 0;
}

} // namespace

TEST_F(HostLifetimeTest, AClientThatLeavesHasItsObjectsEndedYoungestFirst) {
    serve();
    BusClient watcher(bus.address());
    const std::string witness = watcher.create("objWitness");
    {
        BusClient client(bus.address());
        client.create("objPlain");
        client.create("objLater");
        watcher.create("objPlain");
        client.create("objPlain");
    }
    while (logOf(watcher, witness).find("-plain1") == std::string::npos) {
    }
    EXPECT_EQ(logOf(watcher, witness), "+plain1;+later2;+plain3;+plain4;-plain4;-later2;-plain1;");
}

TEST_F(HostLifetimeTest, AReleasedObjectIsEndedBeforeTheAnswer) {
    serve();
    BusClient client(bus.address());
    const std::string witness = client.create("objWitness");
    const std::string plain = client.create("objPlain");
    EXPECT_TRUE(client.release(plain).ok());
    EXPECT_EQ(logOf(client, witness), "+plain1;-plain1;");
    EXPECT_EQ(client.release(plain).error, errors::unknownObject);
    EXPECT_EQ(client.get(plain, "Answer").error, errors::unknownObject);
}

TEST_F(HostLifetimeTest, AClientHasItsLimitOfObjects) {
    serve({"60000", "2"});
    BusClient client(bus.address());
    client.create("objPlain");
    const std::string second = client.create("objPlain");
    const Answer third = client.createAnswer("objPlain");
    EXPECT_EQ(third.error, errors::limitsExceeded);
    EXPECT_EQ(third.text, "A client may have 2 objects, not more");
    BusClient other(bus.address());
    EXPECT_FALSE(other.create("objPlain").empty());
    client.release(second);
    EXPECT_FALSE(client.create("objPlain").empty());
}

TEST_F(HostLifetimeTest, TheServerEndsAfterItsGraceWithoutAnyObject) {
    serve({"1"});
    EXPECT_EQ(server->wait(), 0);
    BusClient client(bus.address());
    EXPECT_FALSE(isServed(client));
}

TEST_F(HostLifetimeTest, TheServerEndsAfterItsLastObject) {
    serveOnDemand();
    {
        BusClient client(bus.address());
        client.create("objPlain");
        client.create("objPlain");
    }
    EXPECT_EQ(logAtTheEnd(), "+plain1;+plain2;-plain2;-plain1;");
}

TEST_F(HostLifetimeTest, TheServerEndsAfterAFailedCreation) {
    serveOnDemand();
    BusClient client(bus.address());
    EXPECT_EQ(client.createAnswer("objBroken").error, errors::runTime);
    EXPECT_EQ(logAtTheEnd(), "refused;");
}

TEST_F(HostLifetimeTest, AnObjectKeepsTheServer) {
    bus.makeActivatable(busName, std::string(KINTAR_FAKE_SERVER) + " 0");
    BusClient client(bus.address());
    const std::string plain = client.create("objPlain");
    ASSERT_FALSE(plain.empty());
    // A thousand turns of the server's event loop are many times no grace.
    for (int round = 0; round < 1000; ++round) {
        ASSERT_TRUE(client.get(plain, "Answer").ok());
    }
}

TEST_F(HostLifetimeTest, EveryCallRightAtTheEndIsAnsweredOrFindsAFreshServer) {
    bus.makeActivatable(busName, std::string(KINTAR_FAKE_SERVER) + " 0");
    BusClient client(bus.address());
    for (int round = 0; round < 50; ++round) {
        const Answer created = client.createAnswer("objPlain");
        ASSERT_TRUE(created.ok()) << created.error << " " << created.text;
        ASSERT_TRUE(client.set(created.asText(), "Number", "i", round).ok());
        ASSERT_EQ(client.get(created.asText(), "Answer").asNumber(), round);
        ASSERT_TRUE(client.release(created.asText()).ok());
    }
}

TEST_F(HostLifetimeTest, ASecondServerSaysThatTheNameIsTaken) {
    serve();
    ChildProcess second({KINTAR_FAKE_SERVER, "60000"},
                        {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
    EXPECT_EQ(second.wait(), 1);
    BusClient client(bus.address());
    EXPECT_FALSE(client.create("objPlain").empty());
}

TEST_F(HostLifetimeTest, TerminationEndsTheObjectsYoungestFirst) {
    serve();
    BusClient client(bus.address());
    client.create("objPlain");
    client.create("objPlain");
    server->signal(SIGTERM);
    EXPECT_EQ(server->wait(), 0);
    EXPECT_EQ(readLine(), "+plain1;+plain2;-plain2;-plain1;");
}

TEST_F(HostLifetimeTest, TerminationGetsOutOfAnOpenBox) {
    serve();
    BusClient client(bus.address());
    BusClient watcher(bus.address());
    const std::string witness = watcher.create("objWitness");
    client.post(client.message(rootPath, serverInterface, "CreateObject", "s", "objBox"));
    while (watcher.get(witness, "Boxes").asNumber() != 1) {
    }
    server->signal(SIGINT);
    EXPECT_EQ(server->wait(), 0);
    EXPECT_EQ(readLine(), "+box1;closed box1;-box1;");
}

TEST_F(HostLifetimeTest, TerminationAnswersACallThatIsHeld) {
    serve();
    BusClient client(bus.address());
    BusClient watcher(bus.address());
    const std::string witness = watcher.create("objWitness");
    const std::string later = client.create("objLater");
    const auto slow = client.start(client.setMessage(later, "Slow", 7));
    client.flush();
    while (logOf(watcher, witness).find("Slow=7") == std::string::npos) {
    }
    server->signal(SIGTERM);
    EXPECT_EQ(client.finish(*slow).error, errors::failed);
    EXPECT_EQ(server->wait(), 0);
}

TEST_F(HostLifetimeTest, TheServerEndsCleanlyWhenTheBusGoesAway) {
    serve();
    BusClient client(bus.address());
    client.create("objPlain");
    bus.stop();
    EXPECT_EQ(server->wait(), 0);
    EXPECT_EQ(readLine(), "+plain1;-plain1;");
}

TEST_F(HostLifetimeTest, TenThousandRoundsLeaveNothingBehind) {
    serve();
    BusClient client(bus.address());
    for (int round = 0; round < 10000; ++round) {
        const std::string path = client.create("objWitness");
        ASSERT_EQ(path, "/net/tarnholm/Kintar3/objWitness/" + std::to_string(round + 1));
        ASSERT_TRUE(client.release(path).ok());
    }
    EXPECT_EQ(client.introspect(rootPath).find("<node name"), std::string::npos);
}

} // namespace kintar::host
