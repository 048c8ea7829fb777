// Whether a database server answers.
#pragma once

#include "companion/postgres/ConnectionText.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace kintar::companion::postgres {

/// Asks the server every few seconds on a connection and a thread of its own, so that nobody has to
/// do anything to learn that it is away or back. A server that hangs up is noticed at once.
class ServerWatch {
public:
    struct Pace {
        std::chrono::milliseconds pause{3000};  ///< between two questions
        std::chrono::milliseconds answer{3000}; ///< what an answer may take
    };

    /// `changed` hears on the watch's thread that the server is away (true) or back (false).
    ServerWatch(const std::string& text, std::function<void(bool away)> changed, Pace pace);
    ServerWatch(const ServerWatch&) = delete;
    ServerWatch& operator=(const ServerWatch&) = delete;
    ~ServerWatch();

    /// True as long as the server is away.
    [[nodiscard]] std::shared_ptr<const std::atomic<bool>> away() const { return away_; }

private:
    void watch();
    void tell(bool away);
    void sleep() const;

    ConnectionText text_;
    std::function<void(bool)> changed_;
    Pace pace_;
    std::shared_ptr<std::atomic<bool>> away_ = std::make_shared<std::atomic<bool>>(false);
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

} // namespace kintar::companion::postgres
