// Patterns of the dialect's LIKE in the forms that PostgreSQL has for them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar::companion::dialect {

/// What a pattern needs to be told of a folded text.
enum class PatternForm : std::uint8_t {
    Exact,  ///< the text is the pattern's prefix
    Prefix, ///< the text begins with it, and that is all
    Like,   ///< SQL's own LIKE says it all
    Regular ///< lists of characters: a regular expression
};

PatternForm formOfPattern(std::string_view pattern);

/// Whether matches of the pattern begin with something, so that an index can serve.
bool hasPrefix(std::string_view pattern);

/// A pattern over folded text for SQL's LIKE with `\` as its escape. Only without lists.
std::string likeForm(std::string_view pattern);

/// A regular expression that a folded text matches exactly where the dialect's LIKE does.
std::string regularForm(std::string_view pattern);

} // namespace kintar::companion::dialect
