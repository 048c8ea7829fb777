#include "search/Board.h"

#include "base/RunTimeError.h"
#include "base/Unicode.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace kintar::board {

void Board::clear() {
    *this = Board();
}

void Board::add(std::int32_t id, std::string name) {
    if (!ids_.insert(id).second) {
        throw RunTimeError::duplicateKey();
    }
    items_.push_back({id, std::move(name), Icon::None});
}

void Board::finishFilling() {
    std::vector<std::string> keys;
    keys.reserve(items_.size());
    for (const Item& item : items_) {
        keys.push_back(unicode::sortKey(item.name));
    }
    byName_.resize(items_.size());
    std::iota(byName_.begin(), byName_.end(), std::size_t{0});
    std::stable_sort(byName_.begin(), byName_.end(),
                     [&keys](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
    rows_ = byName_;
    placeRows();
}

bool Board::setIcon(std::size_t number, Icon icon) {
    Item& item = items_.at(number);
    if (item.icon == icon) {
        return false;
    }
    const auto counted = [this](Icon which) -> std::size_t* {
        return which == Icon::In ? &count_.in : which == Icon::Out ? &count_.out : nullptr;
    };
    if (std::size_t* before = counted(item.icon)) {
        --*before;
    }
    if (std::size_t* after = counted(icon)) {
        ++*after;
    }
    item.icon = icon;
    return true;
}

bool Board::sort() {
    std::vector<std::size_t> rows;
    rows.reserve(byName_.size());
    for (const Icon icon : {Icon::In, Icon::Out, Icon::None}) {
        std::copy_if(byName_.begin(), byName_.end(), std::back_inserter(rows),
                     [this, icon](std::size_t number) { return items_[number].icon == icon; });
    }
    if (rows == rows_) {
        return false;
    }
    rows_ = std::move(rows);
    placeRows();
    return true;
}

void Board::placeRows() {
    places_.resize(rows_.size());
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        places_[rows_[row]] = row;
    }
}

} // namespace kintar::board
