// The name list as its view reads it.
#pragma once

#include "search/ListColumns.h"
#include "search/NameList.h"

#include <QAbstractTableModel>

#include <vector>

namespace kintar::search {

/// Shows a list's rows straight from where they lie; holds no text of its own but the captions.
class NameListModel final : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    void setColumns(std::vector<ListColumn> columns);
    [[nodiscard]] const std::vector<ListColumn>& columns() const { return columns_; }

    /// See NameList; where filling throws, the list is empty.
    void fill(Recordset rows);
    void fill(NameList::Rows rows, NameList::Order order);
    void clear();
    /// Persistent indexes follow their items.
    void sortBy(int column);
    void showSorted(int column, NameList::Order order);
    [[nodiscard]] const NameList& list() const { return list_; }
    void setCurrent(int row) { list_.setCurrent(static_cast<std::size_t>(row)); }
    void forgetCurrent() { list_.forgetCurrent(); }

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void fillWith(const std::function<void()>& fill);
    void orderWith(const std::function<void()>& order);

    std::vector<ListColumn> columns_;
    NameList list_;
};

} // namespace kintar::search
