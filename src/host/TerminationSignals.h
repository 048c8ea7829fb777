// SIGTERM and SIGINT as an event of the event loop.
#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace kintar::host {

/// While it lives, the two signals call `asked` from the event loop. One at a time in a process.
class TerminationSignals {
public:
    /// Throws std::system_error.
    explicit TerminationSignals(std::function<void()> asked);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    std::function<void()> asked_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace kintar::host
