#include "search/NameSearchWindows.h"

#include "search/objNameSearch.h"

#include <utility>

namespace kintar::search {

NameSearchWindows::NameSearchWindows(NameSearchSurroundings surroundings)
    : surroundings_(std::move(surroundings)),
      place_([this] { return platform::FormWindow::make<frmNameSearch>(surroundings_); }) {
    surroundings_.globals.forms.place(FormId::frmNameSearch, place_);
}

NameSearchWindows::~NameSearchWindows() {
    surroundings_.globals.forms.remove(FormId::frmNameSearch);
}

PublicClass NameSearchWindows::describe() {
    return objNameSearch::describe(surroundings_, place_);
}

} // namespace kintar::search
