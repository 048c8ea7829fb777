#include "base/Number.h"

#include "base/RunTimeError.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>

namespace kintar {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

bool isSkipped(char c) {
    return isBlank(c) || c == '\n';
}

std::string_view withoutBlanksAround(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// Takes a sign off the front; true where it was a minus.
bool takeSign(std::string_view& text) {
    if (text.empty() || (text.front() != '-' && text.front() != '+')) {
        return false;
    }
    const bool negative = text.front() == '-';
    text.remove_prefix(1);
    return negative;
}

std::string_view takeDigits(std::string_view& text) {
    std::size_t length = 0;
    while (length < text.size() && isDigit(text[length])) {
        ++length;
    }
    const std::string_view taken = text.substr(0, length);
    text.remove_prefix(length);
    return taken;
}

std::string_view withoutLeadingZeros(std::string_view digits) {
    while (digits.size() > 1 && digits.front() == '0') {
        digits.remove_prefix(1);
    }
    return digits;
}

std::string signedText(bool negative, std::string_view plain) {
    const bool isZero = plain.find_first_not_of("0.") == std::string_view::npos;
    return (negative && !isZero ? "-" : "") + std::string(plain);
}

/// `&H1F` and `&O17` as the text behind the ampersand: 16 bits wrap to negative up to four
/// hexadecimal digits, 32 bits beyond, as integer literals of that notation do.
double prefixedNumber(std::string_view text) {
    const char kind = static_cast<char>(
        std::toupper(static_cast<unsigned char>(text.empty() ? '\0' : text.front())));
    const int base = kind == 'H' ? 16 : kind == 'O' ? 8 : 0;
    if (base == 0) {
        return 0;
    }
    unsigned long long value = 0;
    const auto [end, error] =
        std::from_chars(text.data() + 1, text.data() + text.size(), value, base);
    if (error == std::errc::invalid_argument) {
        return 0;
    }
    if (error != std::errc() || value > std::numeric_limits<std::uint32_t>::max()) {
        throw RunTimeError::overflow();
    }
    if (value <= std::numeric_limits<std::uint16_t>::max()) {
        return static_cast<std::int16_t>(value);
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

/// Digits, a point, digits and an exponent off the front of `text`, in the form that from_chars
/// reads; empty where there is no digit.
std::string decimalPrefix(std::string_view text) {
    std::string number(takeDigits(text));
    if (!text.empty() && text.front() == '.') {
        text.remove_prefix(1);
        const std::string_view fraction = takeDigits(text);
        if (!fraction.empty()) {
            number += (number.empty() ? "0." : ".") + std::string(fraction);
        }
    }
    if (number.empty() || text.empty() ||
        std::string_view("eEdD").find(text.front()) == std::string_view::npos) {
        return number;
    }
    text.remove_prefix(1);
    const bool negative = takeSign(text);
    const std::string_view exponent = takeDigits(text);
    if (!exponent.empty()) {
        number += (negative ? "e-" : "e") + std::string(exponent);
    }
    return number;
}

/// Whether a number that no double holds, in the form of `decimalPrefix`, is too large for one
/// (otherwise it is too small).
bool isTooLarge(std::string_view number) {
    const std::size_t exponentAt = std::min(number.find('e'), number.size());
    const std::string_view digits = number.substr(0, exponentAt);
    const std::size_t first = digits.find_first_of("123456789");
    if (first == std::string_view::npos) {
        return false;
    }
    const auto point = static_cast<long long>(std::min(digits.find('.'), digits.size()));
    const std::string_view exponentText = number.substr(std::min(exponentAt + 1, number.size()));
    constexpr long long beyond = std::numeric_limits<long long>::max() / 2;
    long long exponent = 0;
    const auto [end, error] =
        std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    if (error == std::errc::result_out_of_range) {
        exponent = exponentText.front() == '-' ? -beyond : beyond;
    }
    return std::clamp(exponent, -beyond, beyond) + point > static_cast<long long>(first);
}

} // namespace

double leadingNumber(std::string_view text) {
    std::string dense;
    dense.reserve(text.size());
    for (const char c : text) {
        if (!isSkipped(c)) {
            dense += c;
        }
    }
    std::string_view rest = dense;
    const bool negative = takeSign(rest);
    if (!rest.empty() && rest.front() == '&') {
        const double value = prefixedNumber(rest.substr(1));
        return negative ? -value : value;
    }
    const std::string number = decimalPrefix(rest);
    if (number.empty()) {
        return 0;
    }
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error == std::errc::result_out_of_range) {
        if (isTooLarge(number)) {
            throw RunTimeError::overflow();
        }
        return 0;
    }
    return negative && value != 0 ? -value : value;
}

std::int32_t leadingLong(std::string_view text) {
    const double rounded = std::nearbyint(leadingNumber(text));
    if (rounded < std::numeric_limits<std::int32_t>::min() ||
        rounded > std::numeric_limits<std::int32_t>::max()) {
        throw RunTimeError::overflow();
    }
    return static_cast<std::int32_t>(rounded);
}

std::string wholeNumber(std::string_view text) {
    std::string_view rest = withoutBlanksAround(text);
    const bool negative = takeSign(rest);
    const std::string_view digits = takeDigits(rest);
    if (digits.empty() || !rest.empty()) {
        throw RunTimeError::typeMismatch();
    }
    return signedText(negative, withoutLeadingZeros(digits));
}

std::optional<std::string> numericText(std::string_view text) {
    std::string_view rest = withoutBlanksAround(text);
    const bool negative = takeSign(rest);
    const std::string_view whole = takeDigits(rest);
    std::string_view fraction;
    if (!rest.empty() && rest.front() == '.') {
        rest.remove_prefix(1);
        fraction = takeDigits(rest);
    }
    if ((whole.empty() && fraction.empty()) || !rest.empty()) {
        return std::nullopt;
    }
    while (!fraction.empty() && fraction.back() == '0') {
        fraction.remove_suffix(1);
    }
    std::string plain(whole.empty() ? "0" : withoutLeadingZeros(whole));
    if (!fraction.empty()) {
        plain += "." + std::string(fraction);
    }
    return signedText(negative, plain);
}

bool isPositive(std::string_view plainDecimal) {
    return !plainDecimal.starts_with('-') &&
           plainDecimal.find_first_of("123456789") != std::string_view::npos;
}

std::string decimalText(double value) {
    // The longest shortest form: the smallest double has 324 digits behind the point.
    char text[512];
    const auto [end, error] =
        std::to_chars(text, text + sizeof text, value == 0 ? 0 : value, std::chars_format::fixed);
    return error == std::errc() ? std::string(text, end) : std::string();
}

std::string_view booleanText(bool value) {
    return value ? "True" : "False";
}

std::int16_t toInt16(long long value) {
    if (value < std::numeric_limits<std::int16_t>::min() ||
        value > std::numeric_limits<std::int16_t>::max()) {
        throw RunTimeError::overflow();
    }
    return static_cast<std::int16_t>(value);
}

std::int32_t toInt32(long long value) {
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max()) {
        throw RunTimeError::overflow();
    }
    return static_cast<std::int32_t>(value);
}

std::int16_t add16(std::int16_t a, std::int16_t b) {
    return toInt16(static_cast<long long>(a) + b);
}

std::int32_t add32(std::int32_t a, std::int32_t b) {
    return toInt32(static_cast<long long>(a) + b);
}

} // namespace kintar
