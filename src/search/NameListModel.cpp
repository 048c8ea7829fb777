#include "search/NameListModel.h"

#include "platform/qt/PlainText.h"

#include <exception>
#include <utility>

namespace kintar::search {

void NameListModel::setColumns(std::vector<ListColumn> columns) {
    beginResetModel();
    columns_ = std::move(columns);
    endResetModel();
}

void NameListModel::fill(Recordset rows) {
    fillWith([&] { list_.fill(std::move(rows)); });
}

void NameListModel::fill(NameList::Rows rows, NameList::Order order) {
    fillWith([&] { list_.fill(std::move(rows), std::move(order)); });
}

void NameListModel::fillWith(const std::function<void()>& fill) {
    beginResetModel();
    std::exception_ptr failure;
    try {
        fill();
    } catch (const std::exception&) {
        failure = std::current_exception();
    }
    endResetModel();
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void NameListModel::clear() {
    beginResetModel();
    list_.clear();
    endResetModel();
}

void NameListModel::sortBy(int column) {
    orderWith([&] { list_.sortBy(static_cast<std::size_t>(column)); });
}

void NameListModel::showSorted(int column, NameList::Order order) {
    orderWith([&] { list_.showSorted(static_cast<std::size_t>(column), std::move(order)); });
}

void NameListModel::orderWith(const std::function<void()>& order) {
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    // The view keeps indexes of the current item only.
    order();
    const auto row = list_.currentRow();
    QModelIndexList after;
    for (const QModelIndex& index : before) {
        after.append(row ? createIndex(static_cast<int>(*row), index.column()) : QModelIndex());
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

int NameListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(list_.count());
}

int NameListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

QVariant NameListModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole) {
        return {};
    }
    const FieldValue value = list_.value(static_cast<std::size_t>(index.row()),
                                         static_cast<std::size_t>(index.column()));
    if (value.isNull()) {
        return {};
    }
    const std::string other = value.kind() == FieldValue::Kind::Text ? std::string() : value.text();
    const std::string_view text = other.empty() ? value.view() : std::string_view(other);
    return role == Qt::DisplayRole ? platform::oneLine(text) : platform::tooltipText(text);
}

QVariant NameListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        static_cast<std::size_t>(section) >= columns_.size()) {
        return {};
    }
    return platform::oneLine(columns_[static_cast<std::size_t>(section)].caption);
}

Qt::ItemFlags NameListModel::flags(const QModelIndex& index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren
                           : Qt::NoItemFlags;
}

} // namespace kintar::search
