// One refresh of the board: all states read in one view of the data, then shown together.
#pragma once

#include "search/Board.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace kintar::board {

/// Reads holders' states. Between `begin` and `end` every read sees one state of the data.
class StateSource {
public:
    virtual ~StateSource() = default;
    virtual void begin() = 0;
    virtual Icon read(std::int32_t nameId) = 0;
    /// No error, and nothing where nothing was begun.
    virtual void end() noexcept = 0;
};

/// Works in slices, so that whoever drives it may do something else in between. The board shows
/// nothing of a refresh until everything has been read; an error while reading leaves it as it was.
class BoardRefresh {
public:
    /// Both outlive the refresh, and no item is added meanwhile.
    BoardRefresh(Board& board, StateSource& source) : board_(board), source_(source) {}
    BoardRefresh(const BoardRefresh&) = delete;
    BoardRefresh& operator=(const BoardRefresh&) = delete;
    /// Ends the read, however far it got.
    ~BoardRefresh() { source_.end(); }

    enum class Progress : std::uint8_t { Reading, Read };
    /// Reads on until everything is read or `sliceOver` says so; at least one state each time.
    /// Errors of the source pass, with the read ended.
    Progress readSlice(const std::function<bool()>& sliceOver);

    /// A newer state of this item has been shown: what this refresh has read of it is not.
    void keep(std::size_t number) { kept_.push_back(number); }

    /// Once everything is read: gives the board what was read and sorts it. Whether anything
    /// changed.
    bool show();

private:
    void begin();

    Board& board_;
    StateSource& source_;
    std::vector<Icon> read_;
    std::vector<std::size_t> kept_;
    bool begun_ = false;
};

} // namespace kintar::board
