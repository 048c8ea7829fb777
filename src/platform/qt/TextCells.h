// Cells of a list that hold a line of text each.
#pragma once

#include <QStyledItemDelegate>

namespace kintar::platform {

/// Paints a cell as the style does, but lays its text out once: the style lays each out three
/// times, to measure, to shorten and to draw it, and a list that is filled anew at each search
/// spends most of its time there. For views without icons, check boxes and editors in the cells.
class TextCells final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace kintar::platform
