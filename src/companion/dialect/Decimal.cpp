#include "companion/dialect/Decimal.h"

#include "base/Number.h"

#include <cmath>
#include <cstdlib>

namespace kintar::companion::dialect {

namespace {

int sign(int value) {
    return value < 0 ? -1 : (value > 0 ? 1 : 0);
}

int compareMagnitudes(std::string_view a, std::string_view b) {
    const std::string_view wholeA = a.substr(0, a.find('.'));
    const std::string_view wholeB = b.substr(0, b.find('.'));
    if (wholeA.size() != wholeB.size()) {
        return wholeA.size() < wholeB.size() ? -1 : 1;
    }
    // Same number of whole digits: the texts' order is the numbers', fractions included.
    return sign(a.compare(b));
}

} // namespace

std::string decimalOfNumber(std::string_view number) {
    if (auto plain = numericText(number)) {
        return std::move(*plain);
    }
    const double value = std::strtod(std::string(number).c_str(), nullptr);
    return std::isfinite(value) ? decimalText(value) : std::string("0");
}

int compareDecimals(std::string_view a, std::string_view b) {
    const bool negativeA = a.starts_with('-');
    const bool negativeB = b.starts_with('-');
    if (negativeA != negativeB) {
        return negativeA ? -1 : 1;
    }
    return negativeA ? compareMagnitudes(b.substr(1), a.substr(1)) : compareMagnitudes(a, b);
}

} // namespace kintar::companion::dialect
