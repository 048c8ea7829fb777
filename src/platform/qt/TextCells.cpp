#include "platform/qt/TextCells.h"

#include <QApplication>
#include <QPainter>
#include <QTextLayout>

#include <utility>

namespace kintar::platform {
namespace {

QPalette::ColorGroup colorGroup(QStyle::State state) {
    if (!state.testFlag(QStyle::State_Enabled)) {
        return QPalette::Disabled;
    }
    return state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

QPalette::ColorRole textRole(QStyle::State state) {
    return state.testFlag(QStyle::State_Selected) ? QPalette::HighlightedText : QPalette::Text;
}

/// Whether there is anything to draw behind the text; most cells have nothing.
bool hasGround(const QStyleOptionViewItem& cell) {
    return (cell.state & (QStyle::State_Selected | QStyle::State_MouseOver)) ||
           cell.backgroundBrush.style() != Qt::NoBrush;
}

/// Lays a line out and gives it back; it lives as long as its layout.
QTextLine layOut(QTextLayout& layout, const QStyleOptionViewItem& cell, int width) {
    QTextOption option(QStyle::visualAlignment(cell.direction, cell.displayAlignment));
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(cell.direction);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(width);
    layout.endLayout();
    return line;
}

void drawLine(QPainter& painter, const QString& text, const QStyleOptionViewItem& cell,
              const QRect& room) {
    QTextLayout layout(text, cell.font);
    const QTextLine line = layOut(layout, cell, room.width());
    if (line.naturalTextWidth() > room.width()) {
        const QString cut = cell.fontMetrics.elidedText(text, cell.textElideMode, room.width());
        if (cut != text) {
            drawLine(painter, cut, cell, room);
            return;
        }
    }
    const QSize size(room.width(), static_cast<int>(line.height()));
    const QRect place = QStyle::alignedRect(cell.direction, cell.displayAlignment, size, room);
    painter.setPen(cell.palette.color(colorGroup(cell.state), textRole(cell.state)));
    line.draw(&painter, place.topLeft());
}

} // namespace

void TextCells::paint(QPainter* painter, const QStyleOptionViewItem& option,
                      const QModelIndex& index) const {
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        QStyledItemDelegate::paint(painter, option, index); // its frame goes around the text
        return;
    }
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.features.setFlag(QStyleOptionViewItem::HasDisplay, false);
    const QString text = std::exchange(cell.text, {});
    const QStyle& style = cell.widget != nullptr ? *cell.widget->style() : *QApplication::style();
    if (hasGround(cell)) {
        style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    }
    if (text.isEmpty()) {
        return;
    }
    const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &cell, cell.widget) + 1;
    painter->save();
    painter->setClipRect(cell.rect, Qt::IntersectClip);
    drawLine(*painter, text, cell, cell.rect.adjusted(margin, 0, -margin, 0));
    painter->restore();
}

} // namespace kintar::platform
