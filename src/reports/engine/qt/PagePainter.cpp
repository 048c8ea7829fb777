#include "reports/engine/qt/PagePainter.h"

#include <QPainter>

namespace kintar::reports {
namespace {

constexpr QRgb markColour = qRgb(255, 224, 96);
constexpr double boxLine = 0.7; ///< points

QRectF inUnits(const Item& item) {
    return {item.x * unitsPerPoint, item.y * unitsPerPoint, item.width * unitsPerPoint,
            item.height * unitsPerPoint};
}

} // namespace

PagePainter::PagePainter(const ReportDefinition& definition)
    : definition_(definition), fonts_(fontsOf(definition)) {
    for (const QFont& font : fonts_) {
        metrics_.emplace_back(font);
    }
}

void PagePainter::paint(QPainter& painter, const std::vector<Item>& items, double scale,
                        const QString& marked) const {
    painter.save();
    painter.scale(scale / unitsPerPoint, scale / unitsPerPoint);
    for (const Item& item : items) {
        switch (item.kind) {
        case ItemKind::Text:
            paintText(painter, item, marked);
            break;
        case ItemKind::Rule:
            painter.fillRect(inUnits(item), Qt::black);
            break;
        case ItemKind::Box:
            painter.setPen(QPen(Qt::black, boxLine * unitsPerPoint));
            painter.drawRect(inUnits(item));
            break;
        case ItemKind::Fill:
            painter.fillRect(inUnits(item), QColor(static_cast<QRgb>(item.colour | 0xFF000000U)));
            break;
        }
    }
    painter.restore();
}

void PagePainter::paintText(QPainter& painter, const Item& item, const QString& marked) const {
    const QString text = QString::fromStdString(item.text);
    const QFontMetricsF& metrics = metrics_.at(item.style);
    QRectF area = inUnits(item);
    if (item.align != Align::Start) {
        const double spare = area.width() - metrics.horizontalAdvance(text);
        area.setLeft(area.left() + (item.align == Align::Center ? spare / 2 : spare));
    }
    if (!marked.isEmpty() && text.contains(marked, Qt::CaseInsensitive)) {
        QRectF ground = area;
        ground.setWidth(metrics.horizontalAdvance(text));
        painter.fillRect(ground, QColor(markColour));
    }
    painter.setFont(fonts_.at(item.style));
    painter.setPen(
        QColor(static_cast<QRgb>(definition_.styles.at(item.style).colour | 0xFF000000U)));
    const double room = area.height() - metrics.ascent() - metrics.descent();
    painter.drawText(QPointF(area.left(), area.top() + room / 2 + metrics.ascent()), text);
}

} // namespace kintar::reports
