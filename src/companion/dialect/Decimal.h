// Numbers as exact decimal text: how a text compares with a number.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kintar::companion::dialect {

/// The plain decimal text of a number that a literal writes, exponents included.
std::string decimalOfNumber(std::string_view number);

/// Less than, equal to or greater than 0 as `a` is to `b`; both plain decimal text.
int compareDecimals(std::string_view a, std::string_view b);

} // namespace kintar::companion::dialect
