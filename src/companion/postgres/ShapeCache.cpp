#include "companion/postgres/ShapeCache.h"

#include <utility>

namespace kintar::companion::postgres {

Shape* ShapeCache::find(std::string_view key) {
    const auto found = byKey_.find(key);
    if (found == byKey_.end()) {
        return nullptr;
    }
    shapes_.splice(shapes_.begin(), shapes_, found->second);
    return &shapes_.front();
}

void ShapeCache::drop(const PreparedText& text) {
    if (text.session != 0) {
        dropped.push_back(text.name);
    }
    if (text.ofManyRuns) {
        drop(*text.ofManyRuns);
    }
}

void ShapeCache::drop(const Shape& shape) {
    for (const auto& [key, text] : shape.variants) {
        drop(text);
    }
}

Shape& ShapeCache::insert(Shape shape) {
    if (shapes_.size() >= capacity) {
        drop(shapes_.back());
        byKey_.erase(shapes_.back().key);
        shapes_.pop_back();
    }
    shapes_.push_front(std::move(shape));
    byKey_.emplace(shapes_.front().key, shapes_.begin());
    return shapes_.front();
}

PreparedText& ShapeCache::addVariant(Shape& shape, const std::string& key, PreparedText text) {
    if (shape.variants.size() >= variantCapacity) {
        drop(shape);
        shape.variants.clear();
    }
    return shape.variants.insert_or_assign(key, std::move(text)).first->second;
}

void ShapeCache::clear() {
    for (const Shape& shape : shapes_) {
        drop(shape);
    }
    byKey_.clear();
    shapes_.clear();
}

} // namespace kintar::companion::postgres
