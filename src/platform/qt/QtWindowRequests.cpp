#include "platform/qt/QtWindowRequests.h"

#include "platform/qt/X11Windows.h"

#include <QGuiApplication>
#include <QWidget>
#include <QWindow>
#include <QtGui/qguiapplication_platform.h>

#include <iostream>
#include <optional>
#include <utility>

namespace kintar::platform {

namespace {

std::optional<X11Windows> x11() {
#if QT_CONFIG(xcb)
    // Other platforms may offer the interface, too, but have no connection.
    auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (native != nullptr && native->connection() != nullptr) {
        return X11Windows(native->connection());
    }
#endif
    return std::nullopt;
}

QWindow* ownWindow(WindowId window) {
    const QWidget* widget = QWidget::find(static_cast<WId>(window));
    return widget == nullptr ? nullptr : widget->windowHandle();
}

} // namespace

void QtWindowRequests::SetWindowPos(WindowId window, InsertAfter insertAfter, unsigned flags) {
    if (std::optional<X11Windows> windows = x11()) {
        const auto id = static_cast<xcb_window_t>(window);
        if ((flags & showWindow) != 0) {
            windows->restore(id);
        }
        windows->setTopmost(id, insertAfter == InsertAfter::Topmost);
        if ((flags & noActivate) == 0) {
            windows->activate(id);
        }
        return;
    }
    sayOnce("windows are raised, but cannot be kept above others");
    if (QWindow* own = ownWindow(window)) {
        own->raise();
        if ((flags & noActivate) == 0) {
            own->requestActivate();
        }
    }
}

void QtWindowRequests::SetForegroundWindow(WindowId window) {
    if (std::optional<X11Windows> windows = x11()) {
        windows->activate(static_cast<xcb_window_t>(window));
        return;
    }
    if (QWindow* own = ownWindow(window)) {
        own->raise();
        own->requestActivate();
    } else {
        sayOnce("another program's window cannot be brought to the front");
    }
}

void QtWindowRequests::ShowWindow(WindowId window, ShowCommand /*command*/) {
    if (std::optional<X11Windows> windows = x11()) {
        windows->restore(static_cast<xcb_window_t>(window));
    } else if (QWindow* own = ownWindow(window)) {
        own->showNormal();
    }
}

void QtWindowRequests::CoverFullScreen(WindowId window) {
    if (std::optional<X11Windows> windows = x11()) {
        windows->coverFullScreen(static_cast<xcb_window_t>(window));
    }
}

void QtWindowRequests::sayOnce(const char* what) {
    if (!std::exchange(said_, true)) {
        std::clog << "kintar3: on this platform (" << QGuiApplication::platformName().toStdString()
                  << ") " << what << std::endl;
    }
}

} // namespace kintar::platform
