#include "companion/dialect/LikePattern.h"

#include "base/Unicode.h"

#include <algorithm>

namespace kintar::companion::dialect {

namespace {

/// Appends a code point of valid UTF-8 and moves on behind it.
char32_t decode(std::string_view valid, std::size_t& at) {
    const auto byte = [&](std::size_t offset) {
        return static_cast<char32_t>(static_cast<unsigned char>(valid[at + offset]));
    };
    const char32_t lead = byte(0);
    if (lead < 0x80) {
        at += 1;
        return lead;
    }
    if (lead < 0xE0) {
        const char32_t point = (lead & 0x1FU) << 6U | (byte(1) & 0x3FU);
        at += 2;
        return point;
    }
    if (lead < 0xF0) {
        const char32_t point = (lead & 0x0FU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU);
        at += 3;
        return point;
    }
    const char32_t point = (lead & 0x07U) << 18U | (byte(1) & 0x3FU) << 12U |
                           (byte(2) & 0x3FU) << 6U | (byte(3) & 0x3FU);
    at += 4;
    return point;
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool isAscii(char32_t c) {
    return c < 0x80;
}

} // namespace

std::u32string codePoints(std::string_view text) {
    const std::string valid = unicode::toValidUtf8(text);
    std::u32string points;
    points.reserve(valid.size());
    for (std::size_t at = 0; at < valid.size();) {
        points += decode(valid, at);
    }
    return points;
}

std::string utf8(std::u32string_view codePoints) {
    std::string text;
    for (const char32_t point : codePoints) {
        if (point < 0x80) {
            text += static_cast<char>(point);
        } else if (point < 0x800) {
            text += static_cast<char>(0xC0U | point >> 6U);
            text += static_cast<char>(0x80U | (point & 0x3FU));
        } else if (point < 0x10000) {
            text += static_cast<char>(0xE0U | point >> 12U);
            text += static_cast<char>(0x80U | (point >> 6U & 0x3FU));
            text += static_cast<char>(0x80U | (point & 0x3FU));
        } else {
            text += static_cast<char>(0xF0U | point >> 18U);
            text += static_cast<char>(0x80U | (point >> 12U & 0x3FU));
            text += static_cast<char>(0x80U | (point >> 6U & 0x3FU));
            text += static_cast<char>(0x80U | (point & 0x3FU));
        }
    }
    return text;
}

LikePattern::LikePattern(std::string_view pattern) {
    const std::u32string points = codePoints(pattern);
    const std::u32string folded = codePoints(unicode::fold(pattern));
    const std::size_t lastClose = points.rfind(U']');
    for (std::size_t at = 0; at < points.size();) {
        if (points[at] == U'[' && lastClose != std::u32string::npos && at < lastClose) {
            at = readSet(points, at);
            continue;
        }
        Element element;
        element.kind = points[at] == U'%'   ? Kind::AnyMany
                       : points[at] == U'_' ? Kind::AnyOne
                                            : Kind::Character;
        element.character = folded[at++];
        const bool again = element.kind == Kind::AnyMany && !elements_.empty() &&
                           elements_.back().kind == Kind::AnyMany;
        if (!again) {
            elements_.push_back(std::move(element));
        }
    }
    const auto varying = std::ranges::find_if(
        elements_, [](const Element& element) { return element.kind != Kind::Character; });
    std::for_each(elements_.begin(), varying,
                  [&](const Element& element) { prefix_ += element.character; });
    if (elements_.size() == prefix_.size() + 1 && elements_.back().kind == Kind::AnyMany &&
        std::ranges::all_of(prefix_, isAscii)) {
        asciiPrefix_ = utf8(prefix_);
    }
}

std::size_t LikePattern::readSet(const std::u32string& pattern, std::size_t open) {
    const std::size_t close = pattern.find(U']', open);
    std::u32string_view inside(pattern);
    inside = inside.substr(open + 1, close - open - 1);
    if (inside.empty()) {
        return close + 1; // an empty list stands for nothing at all
    }
    Element set;
    set.kind = Kind::Set;
    set.negated = inside.front() == U'!' && inside.size() > 1;
    inside.remove_prefix(set.negated ? 1 : 0);
    for (std::size_t at = 0; at < inside.size();) {
        const bool range = at + 2 < inside.size() && inside[at + 1] == U'-';
        set.ranges.push_back({inside[at], inside[range ? at + 2 : at]});
        at += range ? 3 : 1;
    }
    const bool single = set.ranges.size() == 1 && !set.negated &&
                        set.ranges.front().first == set.ranges.front().last;
    if (single) {
        set.kind = Kind::Character;
        set.character = codePoints(unicode::fold(utf8(inside))).front();
    }
    elements_.push_back(std::move(set));
    return close + 1;
}

bool LikePattern::inSet(const Element& set, char32_t character) {
    const auto holds = [&](char32_t variant) {
        return std::ranges::any_of(set.ranges, [&](const Range& range) {
            return variant >= range.first && variant <= range.last;
        });
    };
    // Digits and marks have no other case; looking that up costs more than all the rest.
    const bool caseless = isAscii(character) && (character < U'a' || character > U'z');
    return holds(character) ||
           (!caseless && std::ranges::any_of(unicode::caseVariants(character), holds));
}

bool LikePattern::matchesOne(const Element& element, char32_t folded) {
    switch (element.kind) {
    case Kind::Character:
        return element.character == folded;
    case Kind::Set:
        return inSet(element, folded) != element.negated;
    default:
        return true;
    }
}

bool LikePattern::matchesAscii(std::string_view text) const {
    return text.size() >= asciiPrefix_.size() &&
           std::equal(asciiPrefix_.begin(), asciiPrefix_.end(), text.begin(),
                      [](char expected, char c) { return expected == lower(c); });
}

bool LikePattern::matches(std::string_view text) const {
    if (!asciiPrefix_.empty() && matchesAscii(text)) {
        return true;
    }
    const std::u32string points = codePoints(unicode::fold(text));
    std::size_t at = 0;
    std::size_t element = 0;
    std::size_t retryElement = elements_.size() + 1;
    std::size_t retryAt = 0;
    while (at < points.size()) {
        if (element < elements_.size() && elements_[element].kind == Kind::AnyMany) {
            retryElement = ++element;
            retryAt = at;
        } else if (element < elements_.size() && matchesOne(elements_[element], points[at])) {
            ++element;
            ++at;
        } else if (retryElement <= elements_.size()) {
            // The last % takes one character more.
            element = retryElement;
            at = ++retryAt;
        } else {
            return false;
        }
    }
    return std::all_of(elements_.begin() + static_cast<std::ptrdiff_t>(element), elements_.end(),
                       [](const Element& rest) { return rest.kind == Kind::AnyMany; });
}

} // namespace kintar::companion::dialect
