#include "search/BoardRefresh.h"

#include <utility>

namespace kintar::board {

BoardRefresh::BoardRefresh(const Board& board, StateSource& source, std::function<void()> ended)
    : source_(source), ended_(std::move(ended)) {
    ids_.reserve(board.size());
    for (std::size_t number = 0; number < board.size(); ++number) {
        ids_.push_back(board.item(number).id);
    }
    read_.reserve(ids_.size());
    bool aside = false;
    try {
        aside = source_.prepare();
    } catch (...) {
        error_ = std::current_exception();
        ids_.clear();
    }
    if (aside) {
        aside_ = std::thread([this] { readAll(); });
    } else {
        readAll();
    }
}

BoardRefresh::~BoardRefresh() {
    stop_ = true;
    if (aside_.joinable()) {
        aside_.join();
    }
}

void BoardRefresh::readAll() {
    if (!error_) {
        readStates();
    }
    {
        const std::lock_guard lock(mutex_);
        hasEnded_ = true;
    }
    changed_.notify_all();
    ended_();
}

void BoardRefresh::readStates() {
    try {
        source_.begin();
        while (!stop_ && read_.size() < ids_.size()) {
            const auto icons = source_.read(std::span(ids_).subspan(read_.size()));
            read_.insert(read_.end(), icons.begin(), icons.end());
        }
    } catch (...) {
        error_ = std::current_exception();
    }
    source_.end();
}

bool BoardRefresh::waitFor(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [this] { return hasEnded_; });
}

bool BoardRefresh::show(Board& board) {
    if (error_) {
        std::rethrow_exception(error_);
    }
    for (const std::size_t number : kept_) {
        read_.at(number) = board.item(number).icon;
    }
    bool changed = false;
    for (std::size_t number = 0; number < read_.size(); ++number) {
        changed = board.setIcon(number, read_[number]) || changed;
    }
    return board.sort() || changed;
}

} // namespace kintar::board
