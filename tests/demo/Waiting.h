// Waiting for what the event loop brings.
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <functional>

namespace kintar::testing {

/// Runs the event loop until the condition holds; false where it does not within ten seconds.
inline bool waitFor(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(10000);
    // Wakes the loop at the deadline even where nothing else does.
    QTimer alarm;
    alarm.start(200);
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace kintar::testing
