#include "host/BusConnection.h"

#include "host/BusNames.h"
#include "host/MessageValues.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <poll.h>
#include <utility>

namespace kintar::host {

namespace {

// A client that floods the bus must not keep windows from painting.
constexpr int messagesPerTurn = 64;

} // namespace

BusConnection::~BusConnection() {
    readable_.reset();
    writable_.reset();
    if (bus_) {
        sd_bus_flush(bus_);
        sd_bus_close(bus_);
        sd_bus_unref(bus_);
    }
}

void BusConnection::open(const std::string& address) {
    if (address.empty()) {
        check(sd_bus_open_user(&bus_), "the session bus cannot be reached");
        return;
    }
    check(sd_bus_new(&bus_), "bus connection");
    check(sd_bus_set_address(bus_, address.c_str()), "bus address");
    check(sd_bus_set_bus_client(bus_, 1), "bus connection");
    check(sd_bus_start(bus_), "the bus cannot be reached");
}

void BusConnection::serve(Handler handler, std::function<void()> lost) {
    handler_ = std::move(handler);
    lost_ = std::move(lost);
    const int fd = sd_bus_get_fd(bus_);
    check(fd, "bus connection");
    readable_ = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    writable_ = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Write);
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    const auto turn = [this] { pump(messagesPerTurn); };
    QObject::connect(readable_.get(), &QSocketNotifier::activated, &timer_, turn);
    QObject::connect(writable_.get(), &QSocketNotifier::activated, &timer_, turn);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, turn);
    arm();
}

bool BusConnection::requestName() {
    const int result = sd_bus_request_name(bus_, busName, 0);
    if (result == -EEXIST) {
        return false;
    }
    if (result != -EALREADY) {
        check(result, "the bus name cannot be had");
    }
    hasName_ = true;
    // Messages may have been read while the answer was awaited.
    arm();
    return true;
}

void BusConnection::releaseName() {
    hasName_ = false;
    sd_bus_release_name(bus_, busName);
    arm();
}

void BusConnection::closeGate() {
    if (closed_++ == 0) {
        disarm();
    }
}

void BusConnection::openGate() {
    if (--closed_ == 0) {
        arm();
    }
}

bool BusConnection::send(const BusMessage& message) {
    const bool sent = bus_ && sd_bus_send(bus_, message.get(), nullptr) >= 0;
    arm();
    return sent;
}

void BusConnection::post(std::function<void()> work) {
    posted_.push_back(std::move(work));
    arm();
}

void BusConnection::pump(int messages) {
    for (int i = 0; i < messages; ++i) {
        if (!bus_ || closed_ > 0) {
            return;
        }
        sd_bus_message* raw = nullptr;
        const int result = sd_bus_process(bus_, &raw);
        BusMessage message = BusMessage::adopt(raw);
        if (result < 0) {
            lose();
            return;
        }
        // What follows may run an event loop, and with it this very function: the notifiers must be
        // right before.
        arm();
        runPosted();
        if (message) {
            handler_(std::move(message));
        }
        if (result == 0) {
            return;
        }
    }
    arm();
}

void BusConnection::flush() {
    if (bus_) {
        sd_bus_flush(bus_);
    }
}

void BusConnection::arm() {
    if (!bus_ || !readable_ || closed_ > 0) {
        return;
    }
    const int events = std::max(0, sd_bus_get_events(bus_));
    readable_->setEnabled((events & POLLIN) != 0);
    writable_->setEnabled((events & POLLOUT) != 0);

    std::uint64_t due = std::numeric_limits<std::uint64_t>::max();
    if (!posted_.empty()) {
        due = 0;
    } else if (sd_bus_get_timeout(bus_, &due) < 0) {
        due = std::numeric_limits<std::uint64_t>::max();
    }
    if (due == std::numeric_limits<std::uint64_t>::max()) {
        if (timer_.isActive()) {
            timer_.stop();
        }
        return;
    }
    // `due` is a moment of the monotonic clock, which is steady_clock's.
    const auto now = std::chrono::duration_cast<std::chrono::microseconds>(
                         std::chrono::steady_clock::now().time_since_epoch())
                         .count();
    const auto left = static_cast<std::int64_t>(due) - now;
    constexpr std::int64_t longest = 3600LL * 1000;
    timer_.start(static_cast<int>(std::clamp<std::int64_t>((left + 999) / 1000, 0, longest)));
}

void BusConnection::disarm() {
    if (readable_) {
        readable_->setEnabled(false);
        writable_->setEnabled(false);
    }
    timer_.stop();
}

void BusConnection::runPosted() {
    while (!posted_.empty() && closed_ == 0) {
        const std::function<void()> work = std::move(posted_.front());
        posted_.pop_front();
        work();
    }
}

void BusConnection::lose() {
    disarm();
    readable_.reset();
    writable_.reset();
    hasName_ = false;
    if (const std::function<void()> lost = std::exchange(lost_, nullptr)) {
        lost();
    }
}

} // namespace kintar::host
