// Letting the event loop run in a test, up to what is waited for.
#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <functional>

namespace kintar::testing {

/// Runs the event loop until `reached`; false where that has not come true after a time in which it
/// must have on any machine.
inline bool runUntil(const std::function<bool()>& reached) {
    constexpr int patience = 30000;
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer wake;
    wake.start(5);
    while (!reached()) {
        if (elapsed.hasExpired(patience)) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

/// Runs everything that is due now.
inline void runPending() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace kintar::testing
