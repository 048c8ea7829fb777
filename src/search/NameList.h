// The names found: rows read straight from their recordset, an order, and a current item.
#pragma once

#include "server/Recordset.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kintar::search {

/// The items of the name list. Rows are counted as shown, 0 the first; columns are the list's: 0
/// the item's text (the statement's second column), 1 and more its sub-items (third and later).
/// Nothing is copied from the recordset.
class NameList {
public:
    /// An item as the rest of the dialog needs it.
    struct Item {
        std::string key;  ///< the row's `ID` and "ID"
        std::string text; ///< what the list shows for the name
        std::string tag;  ///< the third column; empty where that is Null or missing
    };

    /// Rows by their place in the list; empty: as the recordset has them.
    using Order = std::vector<std::uint32_t>;
    /// Makes an order, on any thread; an empty one soon after `stop` has become true.
    using Sorting = std::function<Order(const std::atomic<bool>& stop)>;
    using Rows = std::shared_ptr<const Recordset>;

    /// Replaces the items; the first one shown becomes the current one. Where it throws, the list
    /// is empty: 3265 without a column `ID` or a second column, 457 at a second row with one `ID`.
    void fill(Recordset rows);
    /// The same with the order that is sorted already.
    void fill(Rows rows, Order order);
    /// No items, and no current one. The sorting stays on.
    void clear();

    /// Sorts by a column, ascending, now and at every fill from now on. The current item stays.
    void sortBy(std::size_t column);
    /// The same with the order that `sorting` gave for these items.
    void showSorted(std::size_t column, Order order);
    /// How to sort rows by a column. It holds the rows itself.
    static Sorting sorting(Rows rows, std::size_t column);
    [[nodiscard]] const Rows& rows() const { return rows_; }
    [[nodiscard]] std::optional<std::size_t> sortColumn() const { return sortColumn_; }

    [[nodiscard]] std::size_t count() const { return rows_->RecordCount(); }
    /// Empty where the statement has no such column or the value is Null.
    [[nodiscard]] FieldValue value(std::size_t row, std::size_t column) const;
    [[nodiscard]] Item item(std::size_t row) const;

    void setCurrent(std::size_t row) { current_ = recordOf(row); }
    void forgetCurrent() { current_.reset(); }
    [[nodiscard]] bool hasCurrent() const { return current_.has_value(); }
    /// The row that shows the current item.
    [[nodiscard]] std::optional<std::size_t> currentRow() const;
    /// Run-time error 91 where there is none.
    [[nodiscard]] Item currentItem() const;

    /// Bytes held beside the texts themselves and by them.
    [[nodiscard]] std::size_t memoryUse() const;

private:
    [[nodiscard]] std::uint32_t recordOf(std::size_t row) const;
    [[nodiscard]] Item itemOfRecord(std::size_t record) const;
    void accept(Rows rows);
    [[nodiscard]] Order sorted() const;

    Rows rows_ = std::make_shared<const Recordset>();
    std::size_t idField_ = 0;
    Order order_;
    std::optional<std::size_t> sortColumn_;
    std::optional<std::uint32_t> current_; ///< a record
};

} // namespace kintar::search
