// A caption that is highlighted while its control has the focus.
#pragma once

#include <QObject>
#include <QPalette>

class QLabel;
class QWidget;

namespace kintar::platform {

/// Draws `caption` in the system's highlight colours while `control` has the focus, and otherwise
/// in the window text's colour on what has the role `background`; NoRole: on what lies behind it.
/// Several controls may share a caption. Owned by the control, which does not outlive the caption.
class FocusHighlight final : public QObject {
public:
    FocusHighlight(QLabel& caption, QWidget& control,
                   QPalette::ColorRole background = QPalette::NoRole);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void highlight(bool focused);

    QLabel& caption_;
    QPalette::ColorRole background_;
};

} // namespace kintar::platform
