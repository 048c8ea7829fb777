#include "server/NameSearchResult.h"

#include <utility>

namespace kintar {

void NameSearchResult::windowLoaded() {
    if (std::exchange(selNameReady_, false)) {
        changed.tell("SelNameReady");
    }
}

void NameSearchResult::dialogClosed() {
    selNameReady_ = true;
    changed.tell("SelName");
    changed.tell("SelNameID");
    changed.tell("SelNameReady");
}

} // namespace kintar
