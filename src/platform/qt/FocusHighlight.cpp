#include "platform/qt/FocusHighlight.h"

#include <QEvent>
#include <QLabel>

namespace kintar::platform {

FocusHighlight::FocusHighlight(QLabel& caption, QWidget& control, QPalette::ColorRole background)
    : QObject(&control), caption_(caption), background_(background) {
    highlight(false);
    control.installEventFilter(this);
}

bool FocusHighlight::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        highlight(event->type() == QEvent::FocusIn);
    }
    return QObject::eventFilter(watched, event);
}

void FocusHighlight::highlight(bool focused) {
    // Roles, not colours: they follow the system's change between light and dark.
    caption_.setForegroundRole(focused ? QPalette::HighlightedText : QPalette::WindowText);
    caption_.setBackgroundRole(focused ? QPalette::Highlight : background_);
    caption_.setAutoFillBackground(focused || background_ != QPalette::NoRole);
}

} // namespace kintar::platform
