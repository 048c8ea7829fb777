#include "tools/site/Interruption.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace kintar::site {

namespace {

std::atomic<int> received = 0;
static_assert(std::atomic<int>::is_always_lock_free);

void note(int signal) {
    received = signal;
}

} // namespace

void noteInterruptions() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        ::sigaction(signal, nullptr, &action);
        if (action.sa_handler == SIG_IGN) {
            continue; // what started this wants it to go on, as nohup does
        }
        action.sa_handler = note;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        ::sigaction(signal, &action, nullptr);
    }
}

void throwIfInterrupted() {
    if (const int signal = received) {
        throw Interrupted(signal);
    }
}

void endBy(int signal) {
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::abort();
}

} // namespace kintar::site
