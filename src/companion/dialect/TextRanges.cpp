#include "companion/dialect/TextRanges.h"

#include "base/Unicode.h"
#include "companion/dialect/LikePattern.h"

#include <algorithm>

namespace kintar::companion::dialect {

namespace {

constexpr char32_t firstSurrogate = 0xD800;
constexpr char32_t lastSurrogate = 0xDFFF;
constexpr char32_t lastCodePoint = 0x10FFFF;

/// The ways to write a folded character that an index ignoring the case of ASCII tells apart.
std::vector<char32_t> spellings(char32_t folded) {
    const bool caseless = folded < 0x80 && (folded < U'a' || folded > U'z');
    if (caseless) {
        return {folded};
    }
    std::vector<char32_t> different = unicode::caseVariants(folded);
    std::erase_if(different, [](char32_t c) { return c >= U'A' && c <= U'Z'; });
    std::ranges::sort(different);
    return different;
}

/// Every spelling of as much of `prefix` as gives no more than the most ranges.
std::vector<std::u32string> spelledPrefixes(std::u32string_view prefix, std::size_t& used) {
    std::vector<std::u32string> spelled{U""};
    for (used = 0; used < std::min(prefix.size(), longestRangePrefix); ++used) {
        // Bytes that are no UTF-8 fold to this one, and lie anywhere in the index.
        if (prefix[used] == U'\uFFFD') {
            break;
        }
        const std::vector<char32_t> next = spellings(prefix[used]);
        if (spelled.size() * next.size() > maximumRanges) {
            break;
        }
        std::vector<std::u32string> longer;
        for (const std::u32string& start : spelled) {
            std::ranges::transform(next, std::back_inserter(longer),
                                   [&](char32_t c) { return start + c; });
        }
        spelled = std::move(longer);
    }
    return spelled;
}

std::vector<TextRange> rangesOf(std::u32string_view prefix, bool whole) {
    std::size_t used = 0;
    const std::vector<std::u32string> spelled = spelledPrefixes(prefix, used);
    if (used == 0) {
        return {};
    }
    const bool exact = whole && used == prefix.size();
    std::vector<TextRange> ranges;
    for (const std::u32string& start : spelled) {
        ranges.push_back({utf8(start), exact ? std::string() : behindPrefix(start)});
        if (!exact && ranges.back().high.empty()) {
            return {};
        }
    }
    return ranges;
}

} // namespace

std::string behindPrefix(std::u32string prefix) {
    while (!prefix.empty() && prefix.back() == lastCodePoint) {
        prefix.pop_back();
    }
    if (!prefix.empty()) {
        char32_t& last = prefix.back();
        last = last + 1 == firstSurrogate ? lastSurrogate + 1 : last + 1;
    }
    return utf8(prefix);
}

std::vector<TextRange> rangesOfPattern(std::string_view pattern) {
    const LikePattern like(pattern);
    return rangesOf(like.prefix(), like.isPlain());
}

std::vector<TextRange> rangesOfText(std::string_view text) {
    return rangesOf(codePoints(unicode::fold(text)), true);
}

} // namespace kintar::companion::dialect
