#include "base/Unicode.h"

#include "base/RunTimeError.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <unicode/coll.h>
#include <unicode/uchar.h>
#include <unicode/ucol.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace kintar::unicode {
namespace {

/// Calls `use` with each code point; invalid bytes count as U+FFFD, one each.
template <class Use>
void forEachCodePoint(std::string_view text, Use use) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t position = 0;
    while (position < length) {
        UChar32 codePoint = 0;
        U8_NEXT_OR_FFFD(bytes, position, length, codePoint);
        use(codePoint);
    }
}

void append(std::string& text, UChar32 codePoint) {
    std::uint8_t bytes[U8_MAX_LENGTH];
    std::int32_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, codePoint);
    text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

UChar32 foldOne(UChar32 codePoint) {
    if (codePoint < 0x80) {
        return codePoint >= 'A' && codePoint <= 'Z' ? codePoint + ('a' - 'A') : codePoint;
    }
    return u_foldCase(codePoint, U_FOLD_CASE_DEFAULT);
}

const icu::Collator& rootCollator() {
    static const std::unique_ptr<icu::Collator> collator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::Collator> made(
            icu::Collator::createInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status) != 0) {
            throw RunTimeError(7, std::string("The root collation cannot be loaded: ") +
                                      u_errorName(status));
        }
        return made;
    }();
    return *collator;
}

std::string collationKey(std::string_view folded) {
    const icu::UnicodeString wide =
        icu::UnicodeString::fromUTF8({folded.data(), static_cast<std::int32_t>(folded.size())});
    const icu::Collator& collator = rootCollator();
    std::uint8_t small[256];
    const std::int32_t length = collator.getSortKey(wide, small, sizeof small);
    if (length <= static_cast<std::int32_t>(sizeof small)) {
        return {reinterpret_cast<const char*>(small), static_cast<std::size_t>(length)};
    }
    std::string key(static_cast<std::size_t>(length), '\0');
    collator.getSortKey(wide, reinterpret_cast<std::uint8_t*>(key.data()), length);
    return key;
}

/// The keys of texts that most names are: of characters whose weight is one byte, and that differ
/// in nothing else. Their key is these bytes and an end that depends on the length alone. Bytes and
/// ends are asked of the collation once; asking it for each text takes ten times as long.
class PlainKeys {
public:
    static const PlainKeys& ofCollation() {
        static const PlainKeys keys;
        return keys;
    }
    /// False, with nothing appended, for any other text.
    bool append(std::string_view folded, std::string& key) const {
        if (folded.size() >= ends_.size()) {
            return false;
        }
        key.reserve(2 * folded.size() + longestEnd);
        for (const char c : folded) {
            const char weight = weights_[static_cast<unsigned char>(c)];
            if (weight == '\0') {
                key.clear();
                return false;
            }
            key += weight;
        }
        key += ends_[folded.size()];
        return true;
    }

private:
    static constexpr std::size_t longestText = 64;
    static constexpr std::size_t longestEnd = 16;
    static constexpr char levelEnd = '\x01';

    PlainKeys() {
        std::string letters;
        for (std::size_t length = 0; length <= longestText; ++length, letters += 'a') {
            ends_.push_back(collationKey(letters).substr(length));
        }
        for (char c = ' '; c < '\x7f'; ++c) {
            const std::string key = collationKey(std::string(1, c));
            if (key.size() > 1 && key[1] == levelEnd && key.substr(1) == ends_[1]) {
                weights_[static_cast<unsigned char>(c)] = key[0];
            }
        }
    }

    std::array<char, 256> weights_{}; ///< 0 for a character that is no plain one
    std::vector<std::string> ends_;   ///< by length
};

} // namespace

bool isAscii(std::string_view text) {
    // Eight bytes at a time: a large list's texts are megabytes.
    std::uint64_t bits = 0;
    while (text.size() >= sizeof bits) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data(), sizeof word);
        bits |= word;
        text.remove_prefix(sizeof word);
    }
    for (const char c : text) {
        bits |= static_cast<unsigned char>(c);
    }
    return (bits & 0x8080808080808080U) == 0;
}

std::string fold(std::string_view text) {
    std::string folded;
    if (isAscii(text)) {
        folded = text;
        for (char& c : folded) {
            c = static_cast<char>(foldOne(c));
        }
        return folded;
    }
    folded.reserve(text.size());
    forEachCodePoint(text, [&](UChar32 codePoint) { append(folded, foldOne(codePoint)); });
    return folded;
}

std::vector<char32_t> caseVariants(char32_t codePoint) {
    const auto original = static_cast<UChar32>(codePoint);
    const UChar32 folded = foldOne(original);
    icu::UnicodeSet closure(folded, folded);
    closure.add(original);
    closure.closeOver(USET_CASE_INSENSITIVE);
    std::vector<char32_t> variants;
    for (std::int32_t i = 0; i < closure.size(); ++i) {
        // The closure also knows full folding ("ss"); only single code points are variants here.
        const UChar32 candidate = closure.charAt(i);
        if (candidate >= 0 && foldOne(candidate) == folded) {
            variants.push_back(static_cast<char32_t>(candidate));
        }
    }
    return variants;
}

std::string sortKey(std::string_view text) {
    const std::string folded = fold(text);
    // A collation key ends with a zero byte and holds no other, so the code points behind it
    // decide only between texts that the collation holds to be equal. UTF-8 sorts as they do.
    std::string key;
    if (!PlainKeys::ofCollation().append(folded, key)) {
        key = collationKey(folded);
    }
    return key += folded;
}

std::string toValidUtf8(std::string_view bytes) {
    if (isAscii(bytes)) {
        return std::string(bytes);
    }
    std::string valid;
    valid.reserve(bytes.size());
    forEachCodePoint(bytes, [&](UChar32 codePoint) { append(valid, codePoint); });
    return valid;
}

} // namespace kintar::unicode
