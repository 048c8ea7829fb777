#include "search/BoardRefresh.h"

namespace kintar::board {

void BoardRefresh::begin() {
    if (!begun_) {
        begun_ = true;
        read_.reserve(board_.size());
        source_.begin();
    }
}

BoardRefresh::Progress BoardRefresh::readSlice(const std::function<bool()>& sliceOver) {
    try {
        begin();
        while (read_.size() < board_.size()) {
            read_.push_back(source_.read(board_.item(read_.size()).id));
            if (sliceOver() && read_.size() < board_.size()) {
                return Progress::Reading;
            }
        }
    } catch (...) {
        source_.end();
        throw;
    }
    source_.end();
    return Progress::Read;
}

bool BoardRefresh::show() {
    for (const std::size_t number : kept_) {
        read_.at(number) = board_.item(number).icon;
    }
    bool changed = false;
    for (std::size_t number = 0; number < read_.size(); ++number) {
        changed = board_.setIcon(number, read_[number]) || changed;
    }
    return board_.sort() || changed;
}

} // namespace kintar::board
