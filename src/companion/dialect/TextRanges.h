// Searches for a text as ranges of an index that ignores the case of ASCII letters only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

/// A search becomes at most so many ranges; a prefix is shortened until it does.
inline constexpr std::size_t maximumRanges = 16;
/// Characters of a prefix that a range goes by: more would leave no fewer names between its ends.
inline constexpr std::size_t longestRangePrefix = 256;

/// A range of texts: `low` itself and all that lies behind it and before `high`, in the order of
/// bytes with ASCII letters made small. With an empty `high`, `low` alone.
struct TextRange {
    std::string low;
    std::string high;
};

/// Ranges that together hold every text that matches a pattern, whatever its letter case, and few
/// others: one for each way of writing the prefix with other than ASCII letters ('s' is also ſ).
/// None where the pattern has no prefix.
std::vector<TextRange> rangesOfPattern(std::string_view pattern);

/// The same for every text equal to `text` without regard to letter case.
std::vector<TextRange> rangesOfText(std::string_view text);

/// The first text behind all that begin with `prefix`, by code points; empty where there is none.
std::string behindPrefix(std::u32string prefix);

} // namespace kintar::companion::dialect
