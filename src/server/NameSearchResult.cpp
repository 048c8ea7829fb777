#include "server/NameSearchResult.h"

#include <utility>

namespace kintar {

void NameSearchResult::windowLoaded() {
    if (std::exchange(selNameReady_, false)) {
        tell("SelNameReady");
    }
}

void NameSearchResult::dialogClosed() {
    selNameReady_ = true;
    tell("SelName");
    tell("SelNameID");
    tell("SelNameReady");
}

NameSearchResult::Observation NameSearchResult::observe(Observer observer) {
    auto kept = std::make_shared<Observer>(std::move(observer));
    std::erase_if(observers_, [](const auto& known) { return known.expired(); });
    observers_.push_back(kept);
    return kept;
}

void NameSearchResult::tell(std::string_view member) {
    // A copy: an observer may end others, or itself, while it is told.
    const auto observers = observers_;
    for (const auto& known : observers) {
        if (const auto observer = known.lock()) {
            (*observer)(member);
        }
    }
}

} // namespace kintar
