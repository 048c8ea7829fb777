#include "search/BoardList.h"

#include "platform/qt/Controls.h"
#include "platform/qt/PlainText.h"
#include "search/BoardIcons.h"

#include <QHeaderView>
#include <QScrollBar>
#include <algorithm>

namespace kintar::search {
namespace {

enum BoardColumn { nameColumn, sortColumn, columns };

QString stateName(board::Icon icon) {
    switch (icon) {
    case board::Icon::In:
        return QStringLiteral("In");
    case board::Icon::Out:
        return QStringLiteral("Out");
    default:
        return QString();
    }
}

} // namespace

BoardModel::BoardModel(const board::Board& board)
    : board_(board), icons_{boardIcon(board::Icon::None), boardIcon(board::Icon::In),
                            boardIcon(board::Icon::Out)} {}

int BoardModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(board_.size());
}

int BoardModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant BoardModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || static_cast<std::size_t>(index.row()) >= board_.size()) {
        return {};
    }
    const board::Board::Item& item =
        board_.item(board_.itemAt(static_cast<std::size_t>(index.row())));
    if (role == Qt::DisplayRole) {
        return platform::oneLine(
            index.column() == nameColumn ? item.name : board::sortText(item.icon, item.name));
    }
    if (role == Qt::DecorationRole && index.column() == nameColumn) {
        return icons_.at(static_cast<std::size_t>(item.icon));
    }
    if (role == Qt::AccessibleDescriptionRole) {
        return stateName(item.icon);
    }
    return {};
}

QVariant BoardModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return section == nameColumn ? QStringLiteral("Name") : QStringLiteral("Status");
}

void BoardModel::statesChanged() {
    if (board_.size() > 0) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount({}) - 1, columns - 1));
    }
}

BoardList::BoardList(const board::Board& board, QWidget* parent)
    : QTreeView(parent), board_(board), rows_(board) {
    platform::nameControl(*this, "lvNames", "list view", QStringLiteral("Names"));
    setModel(&rows_);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setItemsExpandable(false);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    const int iconSide = std::max(16, fontMetrics().height());
    setIconSize(QSize(iconSide, iconSide));
    setMouseTracking(true);
    // Rows keep their places on the screen while names change them; scrolling is by whole rows, so
    // that a name can be brought back under the mouse exactly.
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setAutoScroll(false);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    setColumnHidden(sortColumn, true);
}

std::optional<std::size_t> BoardList::itemOf(const QModelIndex& index) const {
    if (!index.isValid()) {
        return std::nullopt;
    }
    return board_.itemAt(static_cast<std::size_t>(index.row()));
}

BoardList::Steady BoardList::steady() const {
    Steady now;
    if (selectionModel()->hasSelection()) {
        now.selected = itemOf(currentIndex());
    }
    const QPoint mouse = viewport()->mapFromGlobal(QCursor::pos());
    const board::HeadCount known = board_.headCount();
    if (isVisible() && known.in + known.out > 0 && viewport()->rect().contains(mouse)) {
        now.hovered = itemOf(indexAt(mouse));
    }
    return now;
}

void BoardList::restore(const Steady& before) {
    if (before.selected) {
        const int row = static_cast<int>(board_.rowOf(*before.selected));
        if (row != currentIndex().row()) {
            selectionModel()->setCurrentIndex(rows_.index(row, nameColumn),
                                              QItemSelectionModel::ClearAndSelect |
                                                  QItemSelectionModel::Rows);
        }
    }
    if (before.hovered) {
        const QPoint mouse = viewport()->mapFromGlobal(QCursor::pos());
        const int row = static_cast<int>(board_.rowOf(*before.hovered));
        const int moved = row - indexAt(mouse).row();
        verticalScrollBar()->setValue(verticalScrollBar()->value() + moved);
    }
}

void BoardList::selectNothing() {
    selectionModel()->clear();
}

} // namespace kintar::search
