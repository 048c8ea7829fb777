// One connection to the server: its objects, members and values as text.
#pragma once

#include "host/BusMessage.h"
#include "tools/ctl/InterfaceDescription.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kintar::ctl {

/// An error that answered a call: its name on the bus, and what it says.
class CallError : public std::runtime_error {
public:
    CallError(std::string name, const std::string& text)
        : std::runtime_error(text), name_(std::move(name)) {}
    [[nodiscard]] const std::string& name() const { return name_; }

private:
    std::string name_;
};

/// A call waits as long as it takes: a message box of the server can be open meanwhile.
/// Every member throws CallError where the server or the bus answers with an error, and UsageError
/// where a value is not of the member's type.
class ServerClient {
public:
    /// Throws CallError where there is no session bus.
    ServerClient();
    ServerClient(const ServerClient&) = delete;
    ServerClient& operator=(const ServerClient&) = delete;
    /// Leaves the bus, which ends what is left of its objects.
    ~ServerClient();

    [[nodiscard]] std::string version();
    [[nodiscard]] std::vector<std::string> classes();
    [[nodiscard]] std::string introspect(const std::string& path);

    /// The path of a new object.
    std::string create(const std::string& publicClass);
    void release(const std::string& path);
    /// Releases what it created and did not release, the youngest first; errors are dropped: the
    /// objects end with the connection anyway.
    void releaseAll();

    void set(const std::string& path, const std::string& member, const std::string& value);
    std::string get(const std::string& path, const std::string& member);
    std::vector<std::pair<std::string, std::string>> getAll(const std::string& path);
    /// Nothing where the method has no result.
    std::optional<std::string> call(const std::string& path, const std::string& member,
                                    const std::vector<std::string>& values);
    /// The members of an object, asked for once.
    const InterfaceDescription& interfaceOf(const std::string& path);

    /// From now on counts the signals that say that a Boolean member of an object is true; what
    /// was on its way before is not counted.
    void countTrue(const std::string& path, const std::string& member);
    [[nodiscard]] std::size_t trueCount() const { return trueCount_; }

    /// Serves the connection for a time, or for ever; returns early where `stop` says so, which is
    /// asked after every signal of the process, and where the server has gone: false then.
    bool hold(std::optional<double> seconds, const std::function<bool()>& stop);

    /// Calls `ended` for each PrintEnded of an object, while `hold` serves the connection. What the
    /// server sent before it answered the latest call is another client's and left out.
    void onPrintEnded(const std::string& path,
                      std::function<void(std::int16_t request, const std::string& error)> ended);

private:
    static int printEnded(sd_bus_message* message, void* userdata, sd_bus_error* error);
    host::BusMessage newCall(const std::string& path, const std::string& interface,
                             const std::string& member);
    host::BusMessage send(const host::BusMessage& call);
    const MemberDescription& memberOf(const std::string& path, const std::string& member);
    static int ownerChanged(sd_bus_message* message, void* userdata, sd_bus_error* error);

    static int memberChanged(sd_bus_message* message, void* userdata, sd_bus_error* error);

    sd_bus* bus_ = nullptr;
    std::string server_; ///< the unique name of the server that made the objects
    std::string countedMember_;
    std::size_t trueCount_ = 0;
    std::uint64_t lastAnswer_ = 0; ///< the number that the server gave its latest answer
    bool serverLeft_ = false;
    std::function<void(std::int16_t, const std::string&)> printEnded_;
    std::vector<std::string> created_;
    std::map<std::string, InterfaceDescription> interfaces_;
};

} // namespace kintar::ctl
