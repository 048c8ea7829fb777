#include "search/NameList.h"

#include "base/RunTimeError.h"
#include "search/ItemKey.h"
#include "search/SortedOrder.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kintar::search {
namespace {

/// The item's text is the second field; sub-items follow it.
constexpr std::size_t textField = 1;
constexpr std::size_t tagColumn = 1;

bool hasEqualTexts(const Recordset& rows, std::size_t field) {
    std::unordered_set<std::string> seen;
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
        if (!seen.insert(rows.at(row, field).text()).second) {
            return true;
        }
    }
    return false;
}

/// The numbers of a field when each is whole.
std::optional<std::vector<std::int64_t>> wholeNumbers(const Recordset& rows, std::size_t field) {
    std::vector<std::int64_t> numbers;
    numbers.reserve(rows.RecordCount());
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
        const FieldValue value = rows.at(row, field);
        if (value.kind() != FieldValue::Kind::Integer) {
            return std::nullopt;
        }
        numbers.push_back(value.integer());
    }
    return numbers;
}

/// Numbers that lie close together, as IDs do, are ticked off rather than sorted.
bool hasEqualNumbers(std::vector<std::int64_t> numbers) {
    if (numbers.empty()) {
        return false;
    }
    const auto [least, most] = std::ranges::minmax(numbers);
    const auto span = static_cast<std::uint64_t>(most) - static_cast<std::uint64_t>(least);
    if (span / 64 > numbers.size()) {
        std::ranges::sort(numbers);
        return std::ranges::adjacent_find(numbers) != numbers.end();
    }
    std::vector<bool> seen(span + 1);
    for (const std::int64_t number : numbers) {
        const std::uint64_t place =
            static_cast<std::uint64_t>(number) - static_cast<std::uint64_t>(least);
        if (seen[place]) {
            return true;
        }
        seen[place] = true;
    }
    return false;
}

bool hasEqualIds(const Recordset& rows, std::size_t field) {
    auto numbers = wholeNumbers(rows, field);
    return numbers ? hasEqualNumbers(std::move(*numbers)) : hasEqualTexts(rows, field);
}

} // namespace

void NameList::fill(Recordset rows) {
    accept(std::make_shared<const Recordset>(std::move(rows)));
    order_ = sorted();
    if (count() > 0) {
        setCurrent(0);
    }
}

void NameList::fill(Rows rows, Order order) {
    accept(std::move(rows));
    order_ = std::move(order);
    if (count() > 0) {
        setCurrent(0);
    }
}

void NameList::accept(Rows rows) {
    clear();
    const std::size_t idField = rows->fieldIndex("ID");
    if (rows->FieldCount() <= textField) {
        throw RunTimeError(3265, "Item cannot be found in the collection corresponding to the "
                                 "requested name or ordinal.");
    }
    if (hasEqualIds(*rows, idField)) {
        throw RunTimeError::duplicateKey();
    }
    rows_ = std::move(rows);
    idField_ = idField;
}

void NameList::clear() {
    rows_ = std::make_shared<const Recordset>();
    order_ = {};
    current_.reset();
}

void NameList::sortBy(std::size_t column) {
    sortColumn_ = column;
    order_ = sorted();
}

void NameList::showSorted(std::size_t column, Order order) {
    sortColumn_ = column;
    order_ = std::move(order);
}

NameList::Order NameList::sorted() const {
    const std::atomic<bool> never = false;
    return sortColumn_ ? sorting(rows_, *sortColumn_)(never) : Order();
}

NameList::Sorting NameList::sorting(Rows rows, std::size_t column) {
    return [rows = std::move(rows), field = column + textField](const std::atomic<bool>& stop) {
        if (field >= rows->FieldCount()) {
            return Order(); // every row has the same, empty text
        }
        std::string shown;
        const auto textOf = [&](std::size_t record) -> std::string_view {
            const FieldValue value = rows->at(record, field);
            if (value.kind() == FieldValue::Kind::Text) {
                return value.view();
            }
            shown = value.text();
            return shown;
        };
        return sortedOrder(rows->RecordCount(), textOf, stop);
    };
}

FieldValue NameList::value(std::size_t row, std::size_t column) const {
    const std::size_t field = column + textField;
    return field < rows_->FieldCount() ? rows_->at(recordOf(row), field) : FieldValue();
}

NameList::Item NameList::item(std::size_t row) const {
    return itemOfRecord(recordOf(row));
}

std::optional<std::size_t> NameList::currentRow() const {
    if (!current_ || order_.empty()) {
        return current_;
    }
    return std::find(order_.begin(), order_.end(), *current_) - order_.begin();
}

NameList::Item NameList::currentItem() const {
    if (!current_) {
        throw RunTimeError::objectNotSet();
    }
    return itemOfRecord(*current_);
}

std::size_t NameList::memoryUse() const {
    return rows_->memoryUse() + order_.capacity() * sizeof(order_[0]);
}

std::uint32_t NameList::recordOf(std::size_t row) const {
    return order_.empty() ? static_cast<std::uint32_t>(row) : order_.at(row);
}

NameList::Item NameList::itemOfRecord(std::size_t record) const {
    Item item{.key = nameKey(rows_->at(record, idField_).text()),
              .text = rows_->at(record, textField).text(),
              .tag = {}};
    if (textField + tagColumn < rows_->FieldCount()) {
        item.tag = rows_->at(record, textField + tagColumn).text();
    }
    return item;
}

} // namespace kintar::search
