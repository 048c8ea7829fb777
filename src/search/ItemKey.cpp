#include "search/ItemKey.h"

#include "base/Number.h"

namespace kintar::search {

std::string nameKey(std::string_view idText) {
    return std::string(idText) + "ID";
}

std::int32_t idOfKey(std::string_view key) {
    return leadingLong(key);
}

} // namespace kintar::search
