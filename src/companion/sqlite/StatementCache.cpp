#include "companion/sqlite/StatementCache.h"

#include <utility>

namespace kintar::companion::sqlite {

namespace {

/// Work that repeats itself for many rows sends few different statements in turn.
constexpr int shapesUsedInTurn = 4;

} // namespace

StatementShape* StatementCache::useNow(std::list<StatementShape>::iterator shape) {
    if (shape != shapes_.begin()) {
        shapes_.splice(shapes_.begin(), shapes_, shape);
    }
    return &shapes_.front();
}

StatementShape* StatementCache::find(std::string_view key) {
    const auto found = byKey_.find(key);
    return found == byKey_.end() ? nullptr : useNow(found->second);
}

StatementShape* StatementCache::findLately(std::string_view statement,
                                           std::vector<dialect::LiteralValue>& values) {
    int left = shapesUsedInTurn;
    for (auto shape = shapes_.begin(); shape != shapes_.end() && left > 0; ++shape, --left) {
        if (shape->outline.lift(shape->key, statement, values)) {
            return useNow(shape);
        }
    }
    return nullptr;
}

StatementShape& StatementCache::insert(StatementShape shape) {
    if (shapes_.size() >= capacity) {
        byKey_.erase(shapes_.back().key);
        shapes_.pop_back();
    }
    shapes_.push_front(std::move(shape));
    byKey_.emplace(shapes_.front().key, shapes_.begin());
    return shapes_.front();
}

void StatementCache::clear() {
    byKey_.clear();
    shapes_.clear();
}

} // namespace kintar::companion::sqlite
