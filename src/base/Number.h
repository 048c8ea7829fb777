// Numbers from text in the three readings that the system knows, and numbers as text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kintar {

/// The number that a text begins with, 0 where it begins with none. Blanks, tabs and line feeds are
/// skipped wherever they stand; a sign, a decimal point, an exponent (`1e3`, `1d3`) and the
/// prefixes
/// `&H` and `&O` are read; a comma ends the number. Raises run-time error 6 beyond a double.
double leadingNumber(std::string_view text);

/// `leadingNumber`, rounded half to even, as a 32-bit integer; run-time error 6 outside of it.
std::int32_t leadingLong(std::string_view text);

/// A text that is one whole number: blanks around, a sign, ASCII digits. The result is its decimal
/// text without blanks, plus sign and leading zeros, whatever its length. Raises run-time error 13
/// for anything else.
std::string wholeNumber(std::string_view text);

/// A text that is one number: blanks around, a sign, ASCII digits, one decimal point. The result is
/// its plain decimal text (no blanks, plus sign, leading zeros or closing zeros of a fraction),
/// with every digit kept. Nothing where the text is something else.
std::optional<std::string> numericText(std::string_view text);

/// Whether a plain decimal text as the two functions above give it is greater than 0.
bool isPositive(std::string_view plainDecimal);

/// A number as plain decimal text: no exponent, no separators, no closing zeros.
std::string decimalText(double value);

/// "True" or "False".
std::string_view booleanText(bool value);

/// 16- and 32-bit arithmetic that raises run-time error 6 instead of wrapping around.
std::int16_t add16(std::int16_t a, std::int16_t b);
std::int32_t add32(std::int32_t a, std::int32_t b);
/// Run-time error 6 where `value` does not fit.
std::int16_t toInt16(long long value);
std::int32_t toInt32(long long value);

} // namespace kintar
