#include "host/TerminationSignals.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <system_error>
#include <unistd.h>

namespace kintar::host {

namespace {

// What a signal handler may touch.
volatile int eventDescriptor = -1;

void arrived(int) {
    const int before = errno;
    const std::uint64_t one = 1;
    // A full counter says what this would say.
    [[maybe_unused]] const ssize_t written = write(eventDescriptor, &one, sizeof one);
    errno = before;
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> asked) : asked_(std::move(asked)) {
    eventDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (eventDescriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    notifier_ = std::make_unique<QSocketNotifier>(eventDescriptor, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
        std::uint64_t count = 0;
        if (read(eventDescriptor, &count, sizeof count) > 0) {
            asked_();
        }
    });
    handle(SIGTERM, arrived);
    handle(SIGINT, arrived);
}

TerminationSignals::~TerminationSignals() {
    handle(SIGTERM, SIG_DFL);
    handle(SIGINT, SIG_DFL);
    notifier_.reset();
    close(eventDescriptor);
    eventDescriptor = -1;
}

} // namespace kintar::host
