#include "platform/qt/Activation.h"

#include "platform/qt/X11Windows.h"

#include <QGuiApplication>
#include <QWidget>
#include <QtGui/qguiapplication_platform.h>

namespace kintar::platform {

namespace {

bool somebodyManagesWindows() {
#if QT_CONFIG(xcb)
    auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (native != nullptr && native->connection() != nullptr) {
        return X11Windows(native->connection()).hasWindowManager();
    }
#endif
    return true;
}

} // namespace

void showForInput(QWidget& window) {
    window.show();
    if (!window.testAttribute(Qt::WA_ShowWithoutActivating) && !somebodyManagesWindows()) {
        window.activateWindow();
    }
}

} // namespace kintar::platform
