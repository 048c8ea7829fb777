// Keys of list items that stand for database rows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar::search {

/// The key of a name: its number, as the database shows it, followed by "ID".
std::string nameKey(std::string_view idText);

/// The number that a key begins with; 0 where it begins with none. Run-time error 6 outside of 32
/// bits.
std::int32_t idOfKey(std::string_view key);

} // namespace kintar::search
