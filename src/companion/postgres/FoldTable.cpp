#include "companion/postgres/FoldTable.h"

#include "companion/dialect/LikePattern.h"

#include <set>
#include <unicode/uchar.h>

namespace kintar::companion::postgres {

namespace {

bool isCherokee(char32_t point) {
    return (point >= 0x13A0 && point <= 0x13FF) || (point >= 0xAB70 && point <= 0xABBF);
}

} // namespace

FoldTable foldTable(Cherokee cherokee) {
    constexpr char32_t behindTheLastCased = 0x20000;
    constexpr char32_t dottedCapitalI = 0x130;
    FoldTable table;
    std::set<char32_t> known;
    for (char32_t point = 0x80; point < behindTheLastCased; ++point) {
        const bool skipped = point == dottedCapitalI || (point >= 0xD800 && point <= 0xDFFF) ||
                             (cherokee == Cherokee::Without && isCherokee(point));
        if (skipped) {
            continue;
        }
        const auto small = static_cast<char32_t>(u_tolower(static_cast<UChar32>(point)));
        const auto folded =
            static_cast<char32_t>(u_foldCase(static_cast<UChar32>(point), U_FOLD_CASE_DEFAULT));
        if (small != folded && known.insert(small).second) {
            table.from += dialect::utf8({&small, 1});
            table.to += dialect::utf8({&folded, 1});
        }
    }
    return table;
}

} // namespace kintar::companion::postgres
