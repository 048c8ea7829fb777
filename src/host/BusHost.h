// The host of the public classes on the session bus. Knows no class by name: all comes from a
// table.
#pragma once

#include "host/BusConnection.h"
#include "host/ClientLines.h"
#include "host/ClientWatch.h"
#include "host/InstanceCalls.h"
#include "host/InstanceRegistry.h"
#include "host/LateAnswer.h"
#include "host/ServerCalls.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>

namespace kintar::host {

/// What a host is told when it is made.
struct HostOptions {
    std::string version;
    /// From the end of the last instance, or from the start, to the end of the server.
    std::chrono::milliseconds grace{10000};
    std::size_t instancesPerClient = 4096;
    /// Takes one line for the log; holds no names of people and no values.
    std::function<void(const std::string&)> log;
    /// Called once, when the server is to end, with its exit status.
    std::function<void(int)> finished;
    /// Empty for the session bus of the environment.
    std::string address;
};

/// Publishes a class table to the contract in docs/bus.md. One thread; needs a QCoreApplication.
class BusHost {
public:
    BusHost(const ClassTable& table, HostOptions options);
    BusHost(const BusHost&) = delete;
    BusHost& operator=(const BusHost&) = delete;
    /// Ends all instances.
    ~BusHost();

    /// Connects, serves, and takes the name last. Throws std::exception where the bus cannot be
    /// reached or another server has the name.
    void start();

    /// Between them no call is carried out and nothing is read from the bus. Nestable.
    void closeGate() { connection_.closeGate(); }
    void openGate() { connection_.openGate(); }

    /// Takes no more calls. For the way out of nested event loops, before `endAll`.
    void stop();
    /// Ends every instance, the youngest first, and takes no more calls. Not inside of a call.
    void endAll();

private:
    /// The call of a client that is answered later than its handler returns.
    struct HeldCall {
        BusMessage call;
        std::weak_ptr<LateAnswer> answer;
        /// Set while the handler runs, so that a handler that throws has dropped nothing.
        std::shared_ptr<LateAnswer> guard;
    };

    void handle(const BusMessage& message);
    void runLine(const std::string& client);
    void answer(const BusMessage& call, const std::function<void()>& work);
    void dispatch(const std::string& client, const BusMessage& call);
    void dispatchFolder(const BusMessage& call);
    void answerException(const BusMessage& call);

    Completion hold(const BusMessage& call);
    bool letGo(const std::string& client);
    void completed(const BusMessage& call, const std::optional<RunTimeError>& error);
    void forgetHeld(const std::string& client);

    void clientLeft(const std::string& client);
    void endInstancesOf(const std::string& client);
    void end(const Instance& instance);

    void instanceCountChanged();
    void graceOver();
    void lost();
    void log(const std::string& text) const;

    const ClassTable& table_;
    HostOptions options_;
    BusConnection connection_;
    InstanceRegistry registry_;
    ClientLines<BusMessage> lines_;
    ClientWatch watch_;
    InstanceCalls instanceCalls_;
    ServerCalls serverCalls_;
    std::unordered_map<std::string, HeldCall> held_;
    // Clients that left while a call of theirs was under way.
    std::set<std::string> leaving_;
    QTimer grace_;
    bool stopped_ = false;
};

} // namespace kintar::host
