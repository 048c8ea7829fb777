#include "companion/postgres/ServerWatch.h"

#include "companion/postgres/PostgresHandle.h"

#include <utility>

namespace kintar::companion::postgres {

ServerWatch::ServerWatch(const std::string& text, std::function<void(bool away)> changed, Pace pace)
    : text_(text), changed_(std::move(changed)), pace_(pace), thread_([this] { watch(); }) {}

ServerWatch::~ServerWatch() {
    stop_ = true;
    thread_.join();
}

void ServerWatch::tell(bool away) {
    if (away_->exchange(away) != away) {
        changed_(away);
    }
}

/// Until the next attempt, in pieces short enough for an end in between.
void ServerWatch::sleep() const {
    constexpr std::chrono::milliseconds piece{50};
    const auto until = std::chrono::steady_clock::now() + pace_.pause;
    while (!stop_ && std::chrono::steady_clock::now() < until) {
        std::this_thread::sleep_for(piece);
    }
}

void ServerWatch::watch() {
    const Limits limits{pace_.answer, pace_.answer};
    while (!stop_) {
        try {
            PostgresHandle server(text_, true, limits, &stop_);
            tell(false);
            while (!stop_ && server.waitForHangUp(pace_.pause)) {
                server.run("SELECT 1");
            }
        } catch (const RunTimeError&) {
            // Why does not matter: whoever uses the database is told by the statement.
        }
        if (!stop_) {
            tell(true);
            sleep();
        }
    }
}

} // namespace kintar::companion::postgres
