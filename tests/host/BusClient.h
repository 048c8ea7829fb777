// A client of the bus in a test: blocking calls, calls whose answers come later, signals.
#pragma once

#include "host/BusMessage.h"
#include "host/BusNames.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kintar::host {

/// How a call was answered.
struct Answer {
    std::string error; ///< its name; empty where the call succeeded
    std::string text;  ///< of the error
    BusMessage message;

    [[nodiscard]] bool ok() const { return error.empty(); }
    /// The first value: a text, or a number; in a variant or not.
    [[nodiscard]] std::string asText() const;
    [[nodiscard]] long asNumber() const;
};

/// A call whose answer has not been awaited yet.
struct PendingCall {
    bool done = false;
    Answer answer;
};

class BusClient {
public:
    explicit BusClient(const std::string& address);
    BusClient(const BusClient&) = delete;
    BusClient& operator=(const BusClient&) = delete;
    ~BusClient();

    [[nodiscard]] std::string name() const;
    [[nodiscard]] sd_bus* bus() const { return bus_; }

    /// A call message to the server; `types` and what follows as for sd_bus_message_append.
    BusMessage message(const std::string& path, const std::string& interface,
                       const std::string& member, const char* types = "", ...);
    Answer send(const BusMessage& call);
    std::shared_ptr<PendingCall> start(const BusMessage& call);
    /// Works on the connection until the call is answered.
    const Answer& finish(PendingCall& call);
    /// Sends a call that wants no answer.
    void post(const BusMessage& call);
    void flush() { sd_bus_flush(bus_); }

    Answer createAnswer(const std::string& publicClass);
    /// The path; "" where it failed.
    std::string create(const std::string& publicClass);
    Answer release(const std::string& path);

    Answer get(const std::string& path, const std::string& property);
    Answer set(const std::string& path, const std::string& property, const char* type, ...);
    BusMessage setMessage(const std::string& path, const std::string& property, std::int32_t value);
    Answer call(const std::string& path, const std::string& method);
    std::string introspect(const std::string& path);

    /// Signals that arrived, as `path interface property`.
    [[nodiscard]] const std::vector<std::string>& signals() const { return signals_; }
    void waitForSignals(std::size_t count);

    /// Leaves the bus at once.
    void leave();

private:
    void work();
    void addContents(const BusMessage& message, const char* types, va_list values);
    static int answered(sd_bus_message* message, void* userdata, sd_bus_error* error);
    static int signalled(sd_bus_message* message, void* userdata, sd_bus_error* error);

    sd_bus* bus_ = nullptr;
    std::vector<std::string> signals_;
};

/// `net.tarnholm.Kintar3.objPlain` of `/net/tarnholm/Kintar3/objPlain/7`.
std::string interfaceAt(const std::string& path);

} // namespace kintar::host
