#include "overrides/FocusHighlight.h"

#include <QEvent>
#include <QLabel>

namespace kintar {

FocusHighlight::FocusHighlight(QLabel& caption, QWidget& control)
    : QObject(&control), caption_(caption) {
    caption_.setAutoFillBackground(true);
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
    caption_.setBackgroundRole(focused ? QPalette::Highlight : QPalette::Button);
}

} // namespace kintar
