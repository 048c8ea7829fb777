// The names of the In / Out board, who of them is in, and the order in which they stand.
#pragma once

#include "search/HolderState.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace kintar::board {

struct HeadCount {
    std::size_t in = 0;
    std::size_t out = 0;
    bool operator==(const HeadCount&) const = default;
};

/// Items are numbered in the order in which they were added; rows are the places of the list, top
/// to bottom.
class Board {
public:
    struct Item {
        std::int32_t id = 0;
        std::string name;
        Icon icon = Icon::None;
    };

    void clear();
    /// Run-time error 457 where an item with this ID is there.
    void add(std::int32_t id, std::string name);
    /// To be called once all names are added: puts the rows into the order of the names.
    void finishFilling();

    [[nodiscard]] std::size_t size() const { return items_.size(); }
    [[nodiscard]] const Item& item(std::size_t number) const { return items_.at(number); }
    /// Whether that is a change. Rows stay where they are until `sort`.
    bool setIcon(std::size_t number, Icon icon);

    /// Orders the rows by the sort text: those who are in, those who are out, those not read yet,
    /// each by name. Linear. Whether any row changed.
    bool sort();
    [[nodiscard]] std::size_t itemAt(std::size_t row) const { return rows_.at(row); }
    [[nodiscard]] std::size_t rowOf(std::size_t number) const { return places_.at(number); }

    /// Holders in and out, among those whose state is known.
    [[nodiscard]] HeadCount headCount() const { return count_; }

private:
    void placeRows();

    std::vector<Item> items_;
    std::unordered_set<std::int32_t> ids_;
    std::vector<std::size_t> byName_; ///< item numbers in the order of the names
    std::vector<std::size_t> rows_;   ///< item numbers by row
    std::vector<std::size_t> places_; ///< rows by item number
    HeadCount count_;
};

} // namespace kintar::board
