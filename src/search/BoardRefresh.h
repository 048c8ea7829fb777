// One refresh of the board: all states read in one view of the data, then shown together.
#pragma once

#include "search/Board.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

namespace kintar::board {

/// Reads holders' states. Between `begin` and `end` every read sees one state of the data.
class StateSource {
public:
    virtual ~StateSource() = default;
    /// Makes ready for a refresh, on the thread that asks for it. Whether the three members below
    /// may be called on another thread, until that refresh has ended.
    virtual bool prepare() = 0;
    virtual void begin() = 0;
    /// The states of the first of these holders, in order: as many as are best read together, at
    /// least one.
    virtual std::vector<Icon> read(std::span<const std::int32_t> nameIds) = 0;
    /// No error, and nothing where nothing was begun.
    virtual void end() noexcept = 0;
};

/// Reads aside where its source can, so that windows go on meanwhile, and at once where it cannot.
/// The read is over as soon as the last state is known: nobody's write waits for what is shown.
/// The board shows nothing of a refresh before `show`.
class BoardRefresh {
public:
    /// Begins. `source` outlives the refresh; the board's items stay what they are. `ended` is
    /// called once all is read or has failed, on whatever thread.
    BoardRefresh(const Board& board, StateSource& source, std::function<void()> ended);
    BoardRefresh(const BoardRefresh&) = delete;
    BoardRefresh& operator=(const BoardRefresh&) = delete;
    /// Stops the read, however far it got.
    ~BoardRefresh();

    /// Waits at most so long; whether the read has ended, well or not.
    bool waitFor(std::chrono::milliseconds limit);

    /// A newer state of this item has been shown: what this refresh has read of it is not.
    void keep(std::size_t number) { kept_.push_back(number); }

    /// Once the read has ended: gives the board what was read and sorts it. Whether anything
    /// changed. Throws what the read threw; the board is as it was then.
    bool show(Board& board);

private:
    void readAll();
    void readStates();

    StateSource& source_;
    std::function<void()> ended_;
    std::vector<std::int32_t> ids_;
    std::vector<Icon> read_;
    std::exception_ptr error_;
    std::vector<std::size_t> kept_;

    std::atomic<bool> stop_ = false;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool hasEnded_ = false;
    std::thread aside_;
};

} // namespace kintar::board
