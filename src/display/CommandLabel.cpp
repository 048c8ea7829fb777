#include "display/CommandLabel.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <array>

namespace kintar {

namespace {

constexpr int padding = 5;
constexpr double cornerRadius = 4;
/// Letters shrink so far before the commands stand one above the other.
constexpr double leastFontScale = 0.85;

QFont scaled(QFont font, double scale) {
    font.setBold(true);
    if (font.pointSizeF() > 0) {
        font.setPointSizeF(font.pointSizeF() * scale);
    } else {
        font.setPixelSize(std::max(1, static_cast<int>(font.pixelSize() * scale)));
    }
    return font;
}

} // namespace

CommandLabel::CommandLabel(Sign sign, const QColor& colour, QWidget* parent)
    : QPushButton(parent), sign_(sign), colour_(colour) {
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
}

int CommandLabel::leastWidth() const {
    const QFontMetrics metrics(scaled(font(), leastFontScale));
    return metrics.horizontalAdvance(text()) + 2 * padding;
}

QSize CommandLabel::sizeHint() const {
    const QFontMetrics metrics(scaled(font(), 1));
    return {metrics.horizontalAdvance(text()) + signSide() + 3 * padding,
            metrics.height() + padding};
}

QFont CommandLabel::fontFor(int width) const {
    for (const double scale : std::array{1.0, 0.95, 0.9}) {
        const QFont candidate = scaled(font(), scale);
        if (QFontMetrics(candidate).horizontalAdvance(text()) + 2 * padding <= width) {
            return candidate;
        }
    }
    return scaled(font(), leastFontScale);
}

int CommandLabel::signSide() const {
    return QFontMetrics(scaled(font(), 1)).ascent() * 3 / 4;
}

void CommandLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor fill = isDown()       ? colour_.darker(130)
                        : underMouse() ? colour_.lighter(115)
                                       : colour_;
    painter.setBrush(fill);
    painter.setPen(QPen(colour_.darker(140), 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius,
                            cornerRadius);
    const bool signFits = sizeHint().width() <= width();
    painter.setFont(signFits ? scaled(font(), 1) : fontFor(width()));
    painter.setPen(Qt::white);
    const int textWidth = painter.fontMetrics().horizontalAdvance(text());
    const int signRoom = signFits ? signSide() + padding : 0;
    QRect content(0, 0, textWidth + signRoom, height());
    content.moveCenter(rect().center());
    if (signFits) {
        const int side = signSide();
        paintSign(painter, QRect(content.left(), (height() - side) / 2, side, side));
    }
    painter.drawText(content.adjusted(signRoom, 0, 0, 0),
                     static_cast<int>(Qt::AlignCenter | Qt::TextSingleLine), text());
}

void CommandLabel::paintSign(QPainter& painter, const QRect& place) const {
    painter.setPen(QPen(Qt::white, std::max(2.0, place.width() / 5.0), Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    if (sign_ == Sign::Tick) {
        const std::array points{QPoint(place.left(), place.center().y()),
                                QPoint(place.left() + place.width() / 3, place.bottom()),
                                QPoint(place.right(), place.top())};
        painter.drawPolyline(points.data(), static_cast<int>(points.size()));
    } else {
        painter.drawLine(place.topLeft(), place.bottomRight());
        painter.drawLine(place.bottomLeft(), place.topRight());
    }
}

} // namespace kintar
