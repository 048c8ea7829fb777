#include "search/FocusLabels.h"

#include <QEvent>

namespace kintar::search {
namespace {

void colour(QLabel& label, bool selected) {
    label.setAutoFillBackground(selected);
    label.setBackgroundRole(selected ? QPalette::Highlight : QPalette::NoRole);
    label.setForegroundRole(selected ? QPalette::HighlightedText : QPalette::NoRole);
}

} // namespace

void FocusLabels::watch(QWidget* control, QLabel* label) {
    labels_.insert(control, label);
    control->installEventFilter(this);
}

bool FocusLabels::eventFilter(QObject* watched, QEvent* event) {
    const bool gained = event->type() == QEvent::FocusIn;
    if (gained || event->type() == QEvent::FocusOut) {
        if (QLabel* label = labels_.value(watched)) {
            colour(*label, gained);
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace kintar::search
