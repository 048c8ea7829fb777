#include "search/NameListView.h"

#include "platform/qt/TextCells.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace kintar::search {

NameListView::NameListView(QWidget* parent) : QTreeView(parent) {
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setItemsExpandable(false);
    setAllColumnsShowFocus(true);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    header()->setStretchLastSection(true);
    header()->setSectionsMovable(false);
    setItemDelegate(new platform::TextCells(this));
    setColumnClicks(true);
    connect(header(), &QHeaderView::sectionClicked, this, &NameListView::columnClicked);
}

void NameListView::setModel(QAbstractItemModel* newModel) {
    QTreeView::setModel(newModel);
    // While rows are exchanged or reordered, what is current moves without anybody's click.
    connect(newModel, &QAbstractItemModel::modelAboutToBeReset, this, [this] { quiet_ = true; });
    connect(newModel, &QAbstractItemModel::modelReset, this, [this] { quiet_ = false; });
    connect(newModel, &QAbstractItemModel::layoutAboutToBeChanged, this, [this] { quiet_ = true; });
    connect(newModel, &QAbstractItemModel::layoutChanged, this, [this] { quiet_ = false; });
}

void NameListView::selectRow(int row) {
    const QScopedValueRollback<bool> quiet(quiet_, true);
    setCurrentIndex(model()->index(row, 0));
    scrollTo(currentIndex());
}

void NameListView::setColumnClicks(bool on) {
    header()->setSectionsClickable(on);
}

void NameListView::mousePressEvent(QMouseEvent* event) {
    const QModelIndex pressed = indexAt(event->position().toPoint());
    const bool isCurrent = pressed.isValid() && pressed.row() == currentIndex().row();
    QTreeView::mousePressEvent(event);
    if (isCurrent && event->button() == Qt::LeftButton) {
        Q_EMIT itemClicked(pressed.row());
    }
}

void NameListView::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter) {
        QTreeView::keyPressEvent(event);
    } else if (!event->isAutoRepeat() && currentIndex().isValid()) {
        Q_EMIT enterPressed();
    }
}

void NameListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    if (!quiet_ && current.isValid() && current.row() != previous.row()) {
        Q_EMIT itemClicked(current.row());
    }
}

void NameListView::selectionChanged(const QItemSelection& selected,
                                    const QItemSelection& deselected) {
    QTreeView::selectionChanged(selected, deselected);
    // Assistive technologies select without making current.
    const QModelIndexList rows = quiet_ ? QModelIndexList() : selected.indexes();
    if (!rows.isEmpty() && rows.first().row() != currentIndex().row()) {
        selectionModel()->setCurrentIndex(rows.first(), QItemSelectionModel::NoUpdate);
    }
}

} // namespace kintar::search
