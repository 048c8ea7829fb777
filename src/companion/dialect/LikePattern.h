// Patterns of LIKE.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

/// A pattern: `%` any characters, `_` one character, `[a-f]` one of a list, `[!a-f]` one not of it;
/// a `[` that nothing closes and everything else stands for itself. Letter case is ignored.
class LikePattern {
public:
    explicit LikePattern(std::string_view pattern);

    [[nodiscard]] bool matches(std::string_view text) const;
    /// The folded characters that every match begins with.
    [[nodiscard]] const std::u32string& prefix() const { return prefix_; }
    /// Whether the pattern is its prefix, without anything to vary.
    [[nodiscard]] bool isPlain() const { return elements_.size() == prefix_.size(); }

    enum class Kind : unsigned char { Character, AnyOne, AnyMany, Set };
    struct Range {
        char32_t first;
        char32_t last;
    };
    struct Element {
        Kind kind = Kind::Character;
        char32_t character = 0; ///< folded
        bool negated = false;
        std::vector<Range> ranges; ///< as written, letter case kept
    };
    /// What a text must hold, from its first character to its last.
    [[nodiscard]] const std::vector<Element>& elements() const { return elements_; }

private:
    std::size_t readSet(const std::u32string& pattern, std::size_t open);
    [[nodiscard]] static bool inSet(const Element& set, char32_t character);
    [[nodiscard]] static bool matchesOne(const Element& element, char32_t folded);
    [[nodiscard]] bool matchesAscii(std::string_view text) const;

    std::vector<Element> elements_;
    std::u32string prefix_;
    /// The prefix where the pattern is `prefix%` and ASCII: compared without decoding.
    std::string asciiPrefix_;
};

/// The code points of a text; a byte that is not UTF-8 counts as U+FFFD.
std::u32string codePoints(std::string_view text);
/// The text of code points.
std::string utf8(std::u32string_view codePoints);

} // namespace kintar::companion::dialect
