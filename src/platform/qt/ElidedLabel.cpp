#include "platform/qt/ElidedLabel.h"

#include "platform/qt/PlainText.h"

#include <QMouseEvent>
#include <QPainter>

namespace kintar::platform {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    makePlain(*this);
}

void ElidedLabel::setLine(std::string_view text) {
    setText(oneLine(text));
    setAccessibleName(this->text());
    setToolTip(tooltipText(text));
}

QString ElidedLabel::shown() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && shown() == text()) {
        event->ignore();
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    const Qt::Alignment side = text().isRightToLeft() ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(
        contentsRect(),
        static_cast<int>(side | Qt::AlignVCenter | Qt::AlignAbsolute | Qt::TextSingleLine),
        shown());
}

void ElidedLabel::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && doubleClicked_) {
        doubleClicked_();
    }
}

} // namespace kintar::platform
