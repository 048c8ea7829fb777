// A caption that is highlighted while its control has the focus.
#pragma once

#include <QObject>

class QLabel;
class QWidget;

namespace kintar {

/// Draws `caption` in the system's highlight colours while `control` has the focus, and in the
/// window text's colour on the button face otherwise. Owned by the control.
class FocusHighlight final : public QObject {
public:
    FocusHighlight(QLabel& caption, QWidget& control);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void highlight(bool focused);

    QLabel& caption_;
};

} // namespace kintar
