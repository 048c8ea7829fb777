// A test with a bus of its own and a server of fake classes on it.
#pragma once

#include "host/BusClient.h"
#include "host/PrivateBus.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <string>
#include <unistd.h>
#include <vector>

namespace kintar::host {

class ServedTest : public testing::Test {
protected:
    /// Starts the server and returns when it is on the bus.
    void serve(const std::vector<std::string>& arguments = {"60000"}) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        output_ = ends[0];
        std::vector<std::string> command{KINTAR_FAKE_SERVER};
        command.insert(command.end(), arguments.begin(), arguments.end());
        server = std::make_unique<ChildProcess>(command,
                                                std::vector<std::pair<std::string, std::string>>{
                                                    {"DBUS_SESSION_BUS_ADDRESS", bus.address()}},
                                                ends[1]);
        close(ends[1]);
        ASSERT_EQ(readLine(), "ready");
    }

    ~ServedTest() override {
        if (output_ >= 0) {
            close(output_);
        }
    }

    /// A line that the server wrote; the last one is its log.
    std::string readLine() const {
        std::string line;
        char c = 0;
        while (read(output_, &c, 1) == 1 && c != '\n') {
            line += c;
        }
        return line;
    }

    std::string logOf(BusClient& client, const std::string& witness) const {
        return client.get(witness, "Log").asText();
    }

    PrivateBus bus;
    std::unique_ptr<ChildProcess> server;

private:
    int output_ = -1;
};

} // namespace kintar::host
