// Case and order of text for all of Unicode, the same wherever the system compares names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kintar::unicode {

/// Simple case folding, code point by code point: two texts are equal without regard to case
/// exactly where their folded forms are equal. A byte that is not UTF-8 becomes U+FFFD.
std::string fold(std::string_view text);

/// All code points that fold to the same as `codePoint`, itself included ('s': s, S, U+017F).
std::vector<char32_t> caseVariants(char32_t codePoint);

/// A key whose byte order is the order of names: Unicode's root collation over the folded text,
/// then its code points. Two texts have one key exactly where their folded forms are equal.
std::string sortKey(std::string_view text);

/// No byte above 127.
bool isAscii(std::string_view text);

/// Whether a byte of UTF-8 belongs to a character that began before it.
constexpr bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Valid UTF-8: every byte that is not part of a valid sequence becomes U+FFFD.
std::string toValidUtf8(std::string_view bytes);

} // namespace kintar::unicode
