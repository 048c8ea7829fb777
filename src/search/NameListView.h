// The list view of names.
#pragma once

#include <QTreeView>

namespace kintar::search {

/// A report-style list with one selected row. An item is clicked with the mouse, with the arrow
/// keys, or by an assistive technology that selects it.
class NameListView final : public QTreeView {
    Q_OBJECT

public:
    explicit NameListView(QWidget* parent);
    void setModel(QAbstractItemModel* model) override;

    /// Selects a row without a click.
    void selectRow(int row);
    /// Whether clicks on column headings count.
    void setColumnClicks(bool on);

Q_SIGNALS:
    void itemClicked(int row);
    void columnClicked(int column);
    /// Enter was pressed, once, on the current item.
    void enterPressed();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;

private:
    bool quiet_ = false; ///< what changes now is no click
};

} // namespace kintar::search
