#include "companion/sqlite/StatementCache.h"

#include <utility>

namespace kintar::companion::sqlite {

StatementShape* StatementCache::find(std::string_view key) {
    if (!shapes_.empty() && shapes_.front().key == key) {
        return &shapes_.front();
    }
    const auto found = byKey_.find(key);
    if (found == byKey_.end()) {
        return nullptr;
    }
    shapes_.splice(shapes_.begin(), shapes_, found->second);
    return &shapes_.front();
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
