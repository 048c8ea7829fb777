// The connection to the session bus, served from the event loop.
#pragma once

#include "host/BusMessage.h"

#include <QSocketNotifier>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <string>

namespace kintar::host {

/// Reads messages whenever the event loop runs, a nested one of a message box included, and hands
/// each to one handler outside of sd-bus, so that a handler may run an event loop of its own.
///
/// While the gate is closed nothing is read and no handler runs; what arrives waits.
class BusConnection {
public:
    using Handler = std::function<void(BusMessage)>;

    BusConnection() = default;
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    ~BusConnection();

    /// Connects to the session bus, or to the bus at `address`. Throws std::system_error.
    void open(const std::string& address);
    /// Serves from now on. `lost` is called once, when the bus has gone away.
    void serve(Handler handler, std::function<void()> lost);

    /// False where another server has the name. Throws std::system_error for anything else.
    bool requestName();
    void releaseName();
    [[nodiscard]] bool hasName() const { return hasName_; }

    /// Nestable: the gate is open when it was opened as often as it was closed.
    void closeGate();
    void openGate();
    [[nodiscard]] bool isGateOpen() const { return closed_ == 0; }

    /// Sends at once as far as the bus takes it, the rest from the event loop. False where the
    /// message cannot be sent any more.
    bool send(const BusMessage& message);
    /// Runs `work` from the event loop, or right after the message being read, never inside sd-bus.
    void post(std::function<void()> work);
    /// Reads and handles what has arrived, at most `messages` of them.
    void pump(int messages);
    /// Writes out what waits to be written.
    void flush();

    [[nodiscard]] sd_bus* bus() const { return bus_; }

private:
    void arm();
    void disarm();
    void runPosted();
    void lose();

    sd_bus* bus_ = nullptr;
    Handler handler_;
    std::function<void()> lost_;
    std::unique_ptr<QSocketNotifier> readable_;
    std::unique_ptr<QSocketNotifier> writable_;
    QTimer timer_;
    std::deque<std::function<void()>> posted_;
    int closed_ = 0;
    bool hasName_ = false;
};

} // namespace kintar::host
