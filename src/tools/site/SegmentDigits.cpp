#include "tools/site/SegmentDigits.h"

#include <QColor>
#include <QPainter>
#include <QPen>

#include <array>
#include <string>

namespace kintar::site {

namespace {

/// Lit segments of a digit: top, upper left, upper right, middle, lower left, lower right, bottom.
constexpr std::array<unsigned, 10> segmentsOf{0b1110111, 0b0010010, 0b1011101, 0b1011011,
                                              0b0111010, 0b1101011, 0b1101111, 0b1010010,
                                              0b1111111, 0b1111011};

void drawDigit(QPainter& painter, const QRectF& box, unsigned segments) {
    const qreal middle = box.center().y();
    const std::array<QLineF, 7> lines{
        QLineF{box.topLeft(), box.topRight()},
        QLineF{box.topLeft(), QPointF(box.left(), middle)},
        QLineF{box.topRight(), QPointF(box.right(), middle)},
        QLineF{QPointF(box.left(), middle), QPointF(box.right(), middle)},
        QLineF{QPointF(box.left(), middle), box.bottomLeft()},
        QLineF{QPointF(box.right(), middle), box.bottomRight()},
        QLineF{box.bottomLeft(), box.bottomRight()}};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if ((segments & (1U << (lines.size() - 1 - i))) != 0U) {
            painter.drawLine(lines.at(i));
        }
    }
}

} // namespace

void drawNumber(QPainter& painter, const QRectF& area, int number, const QColor& colour) {
    const std::string digits = std::to_string(number);
    const qreal stroke = area.height() / 8;
    const qreal width = area.height() / 2;
    const qreal step = width + stroke * 2.4;
    const qreal total = step * static_cast<qreal>(digits.size()) - stroke * 2.4;
    qreal left = area.center().x() - total / 2;
    painter.save();
    painter.setPen(QPen(colour, stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const char digit : digits) {
        const QRectF box(left, area.top() + stroke / 2, width, area.height() - stroke);
        drawDigit(painter, box, segmentsOf.at(static_cast<std::size_t>(digit - '0')));
        left += step;
    }
    painter.restore();
}

} // namespace kintar::site
