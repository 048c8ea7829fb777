#include "companion/dialect/PostgresPattern.h"

#include "base/Unicode.h"
#include "companion/dialect/LikePattern.h"
#include "companion/dialect/TextRanges.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

namespace kintar::companion::dialect {

namespace {

using Kind = LikePattern::Kind;
using Element = LikePattern::Element;
using Range = LikePattern::Range;

/// Every code point that folds to another one, with that.
const std::vector<std::pair<char32_t, char32_t>>& foldings() {
    static const std::vector<std::pair<char32_t, char32_t>> all = [] {
        constexpr char32_t behindTheLastCased = 0x20000;
        std::vector<std::pair<char32_t, char32_t>> found;
        for (char32_t point = 1; point < behindTheLastCased; ++point) {
            if (point >= 0xD800 && point <= 0xDFFF) {
                continue;
            }
            const char32_t folded = codePoints(unicode::fold(utf8({&point, 1}))).front();
            if (folded != point) {
                found.emplace_back(point, folded);
            }
        }
        return found;
    }();
    return all;
}

std::string escaped(char32_t point) {
    char text[16];
    std::snprintf(text, sizeof text, "\\U%08X", static_cast<unsigned>(point));
    return text;
}

/// A list of characters. A character of a folded text is in it where any way to write it is.
std::string bracket(const Element& set) {
    std::string inside;
    for (const Range& range : set.ranges) {
        if (range.first > range.last) {
            continue;
        }
        inside += escaped(range.first) + "-" + escaped(range.last);
        for (const auto& [point, folded] : foldings()) {
            if (point >= range.first && point <= range.last) {
                inside += escaped(folded);
            }
        }
    }
    if (inside.empty()) {
        // Nothing is in a list of nothing.
        return set.negated ? "." : "[^\\U00000001-\\U0010FFFF]";
    }
    return (set.negated ? "[^" : "[") + inside + "]";
}

std::string regularPart(const Element& element) {
    switch (element.kind) {
    case Kind::Character:
        return escaped(element.character);
    case Kind::AnyOne:
        return ".";
    case Kind::AnyMany:
        return ".*";
    case Kind::Set:
        break;
    }
    return bracket(element);
}

std::string likePart(const Element& element) {
    switch (element.kind) {
    case Kind::AnyOne:
        return "_";
    case Kind::AnyMany:
        return "%";
    default:
        break;
    }
    const char32_t c = element.character;
    const bool special = c == U'%' || c == U'_' || c == U'\\';
    return (special ? "\\" : "") + utf8({&c, 1});
}

} // namespace

PatternForm formOfPattern(std::string_view pattern) {
    const LikePattern like(pattern);
    const auto& elements = like.elements();
    if (like.isPlain()) {
        return PatternForm::Exact;
    }
    const auto isSet = [](const Element& element) { return element.kind == Kind::Set; };
    if (std::ranges::any_of(elements, isSet)) {
        return PatternForm::Regular;
    }
    const bool onlyMore =
        std::all_of(elements.begin() + static_cast<std::ptrdiff_t>(like.prefix().size()),
                    elements.end(), [](const Element& e) { return e.kind == Kind::AnyMany; });
    return onlyMore && !like.prefix().empty() && !behindPrefix(like.prefix()).empty()
               ? PatternForm::Prefix
               : PatternForm::Like;
}

bool hasPrefix(std::string_view pattern) {
    const LikePattern like(pattern);
    return !like.prefix().empty() && !behindPrefix(like.prefix()).empty();
}

std::string likeForm(std::string_view pattern) {
    std::string form;
    const LikePattern like(pattern);
    for (const Element& element : like.elements()) {
        form += likePart(element);
    }
    return form;
}

std::string regularForm(std::string_view pattern) {
    std::string form = "^";
    const LikePattern like(pattern);
    for (const Element& element : like.elements()) {
        form += regularPart(element);
    }
    return form + "$";
}

} // namespace kintar::companion::dialect
