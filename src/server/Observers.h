// Those who want to be told of something.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kintar {

/// Whoever holds one is told, until it is destroyed. It must not outlive what it observes.
using Observation = std::shared_ptr<void>;

template <class... Arguments>
class Observers {
public:
    using Observer = std::function<void(Arguments...)>;

    [[nodiscard]] Observation add(Observer observer) {
        auto kept = std::make_shared<Observer>(std::move(observer));
        std::erase_if(observers_, [](const auto& known) { return known.expired(); });
        observers_.push_back(kept);
        return kept;
    }

    void tell(Arguments... arguments) const {
        // A copy: an observer may end others, or itself, while it is told.
        const auto observers = observers_;
        for (const auto& known : observers) {
            if (const auto observer = known.lock()) {
                (*observer)(arguments...);
            }
        }
    }

private:
    std::vector<std::weak_ptr<Observer>> observers_;
};

} // namespace kintar
