// Invented names by script.
#pragma once

#include <span>
#include <string_view>

namespace kintar::site {

struct NameList {
    int share; ///< of 100 names
    std::span<const std::string_view> lastNames;
    std::span<const std::string_view> firstNames;
};

/// Latin with and without diacritics, Greek, Cyrillic, Arabic, Hebrew, Chinese, Japanese, Thai,
/// Devanagari. The shares add up to 100.
std::span<const NameList> nameLists();

} // namespace kintar::site
