// The name search's window at its place.
#pragma once

#include "search/NameSearchSurroundings.h"
#include "search/frmNameSearch.h"
#include "server/ClassTable.h"
#include "server/Forms.h"

namespace kintar::search {

/// Holds the default instance of the name search window, at its place among the server's forms, for
/// as long as it lives.
class NameSearchWindows {
public:
    explicit NameSearchWindows(NameSearchSurroundings surroundings);
    NameSearchWindows(const NameSearchWindows&) = delete;
    NameSearchWindows& operator=(const NameSearchWindows&) = delete;
    ~NameSearchWindows();

    [[nodiscard]] NameSearchSurroundings& surroundings() { return surroundings_; }
    /// The other windows that it opens, once they are there.
    void setNeighbours(NameSearchNeighbours neighbours) {
        surroundings_.neighbours = std::move(neighbours);
    }
    DefaultInstance<frmNameSearch>& place() { return place_; }
    /// The public class `objNameSearch`; this outlives the table that it goes to.
    PublicClass describe();

private:
    NameSearchSurroundings surroundings_;
    DefaultInstance<frmNameSearch> place_;
};

} // namespace kintar::search
