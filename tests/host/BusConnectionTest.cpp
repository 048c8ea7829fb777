#include "host/BusConnection.h"
#include "host/BusClient.h"
#include "host/PrivateBus.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <poll.h>

namespace kintar::host {

namespace {

class BusConnectionTest : public testing::Test {
protected:
    BusConnectionTest() : application(argc, argv), client(bus.address()) {
        connection.open(bus.address());
        connection.serve([this](BusMessage message) { arrived(std::move(message)); }, [] {});
        EXPECT_TRUE(connection.requestName());
    }

    virtual void arrived(BusMessage message) {
        if (std::string(message.member()) == "Hello") {
            ++hellos;
            if (onHello) {
                onHello();
            }
        }
    }

    // Sends one message and returns when it lies in the server's socket.
    void sendHello() {
        client.post(client.message(rootPath, serverInterface, "Hello"));
        pollfd socket{sd_bus_get_fd(connection.bus()), POLLIN, 0};
        ASSERT_EQ(poll(&socket, 1, 60000), 1);
    }

    void runUntil(const std::function<bool()>& reached) {
        while (!reached()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application;
    PrivateBus bus;
    BusClient client;
    BusConnection connection;
    int hellos = 0;
    std::function<void()> onHello;
};

} // namespace

TEST_F(BusConnectionTest, NothingIsHandledWhileTheGateIsClosed) {
    runUntil([this] {
        sendHello();
        return hellos > 0;
    });
    const int before = hellos;
    connection.closeGate();
    connection.closeGate();
    sendHello();
    QCoreApplication::processEvents();
    connection.openGate();
    QCoreApplication::processEvents();
    EXPECT_EQ(hellos, before);
    connection.openGate();
    runUntil([&] { return hellos > before; });
}

TEST_F(BusConnectionTest, PostedWorkWaitsForTheGateToo) {
    connection.closeGate();
    bool ran = false;
    connection.post([&] { ran = true; });
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
    connection.openGate();
    runUntil([&] { return ran; });
}

TEST_F(BusConnectionTest, PostedWorkNeverRunsInsideOfPosting) {
    bool ran = false;
    connection.post([&] { ran = true; });
    EXPECT_FALSE(ran);
    runUntil([&] { return ran; });
}

TEST_F(BusConnectionTest, MessagesAreHandledInsideAHandlersOwnEventLoop) {
    int depth = 0;
    onHello = [&] {
        if (++depth == 1) {
            sendHello();
            runUntil([&] { return depth == 2; });
        }
    };
    sendHello();
    runUntil([&] { return depth == 2; });
    EXPECT_EQ(hellos, 2);
}

TEST_F(BusConnectionTest, TheNameIsTakenOnceAndCanBeHadAgain) {
    BusConnection second;
    second.open(bus.address());
    EXPECT_FALSE(second.requestName());
    connection.releaseName();
    EXPECT_FALSE(connection.hasName());
    EXPECT_TRUE(second.requestName());
}

} // namespace kintar::host
