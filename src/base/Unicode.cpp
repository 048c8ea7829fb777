#include "base/Unicode.h"

#include "base/RunTimeError.h"

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

} // namespace

std::string fold(std::string_view text) {
    std::string folded;
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
    const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(folded);
    const icu::Collator& collator = rootCollator();
    std::uint8_t small[256];
    std::int32_t length = collator.getSortKey(wide, small, sizeof small);
    std::string key;
    if (length <= static_cast<std::int32_t>(sizeof small)) {
        key.assign(reinterpret_cast<const char*>(small), static_cast<std::size_t>(length));
    } else {
        key.resize(static_cast<std::size_t>(length));
        collator.getSortKey(wide, reinterpret_cast<std::uint8_t*>(key.data()), length);
    }
    // A collation key ends with a zero byte and holds no other, so the code points behind it
    // decide only between texts that the collation holds to be equal. UTF-8 sorts as they do.
    return key + folded;
}

std::string toValidUtf8(std::string_view bytes) {
    std::string valid;
    valid.reserve(bytes.size());
    forEachCodePoint(bytes, [&](UChar32 codePoint) { append(valid, codePoint); });
    return valid;
}

} // namespace kintar::unicode
