// Ctrl-C and the end of the session, while a site is being made.
#pragma once

#include <exception>

namespace kintar::site {

/// What ends the making of a site after a signal.
class Interrupted final : public std::exception {
public:
    explicit Interrupted(int signal) : signal_(signal) {}
    [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }
    [[nodiscard]] int signal() const { return signal_; }

private:
    int signal_;
};

/// Makes SIGINT, SIGTERM and SIGHUP something that `throwIfInterrupted` tells. A second one ends
/// the process at once.
void noteInterruptions();

/// Throws Interrupted once a signal has come; on any thread.
void throwIfInterrupted();

/// Ends this process as the signal would have done.
[[noreturn]] void endBy(int signal);

} // namespace kintar::site
