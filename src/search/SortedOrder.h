// The order of rows by their texts.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::search {

/// Row numbers in ascending order of their texts: as names are ordered, case ignored; rows with
/// equal texts stay in the order of their numbers. `textOf` is asked once a row; its answer is read
/// before it is asked again. Soon after `stop` has become true, none.
std::vector<std::uint32_t>
sortedOrder(std::size_t count, const std::function<std::string_view(std::size_t row)>& textOf,
            const std::atomic<bool>& stop);

} // namespace kintar::search
