#include "platform/qt/QtEventLoop.h"

#include <QCoreApplication>
#include <QTimer>

#include <utility>

namespace kintar::platform {

void QtEventLoop::later(std::function<void()> work) {
    // A timer and no posted event: those are all served before any input is looked at.
    QTimer::singleShot(0, QCoreApplication::instance(), std::move(work));
}

} // namespace kintar::platform
