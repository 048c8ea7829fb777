// A literal of a statement, as it stands in the text.
#pragma once

#include "base/DateTime.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar::companion::dialect {

enum class LiteralKind : std::uint8_t {
    Integer, ///< fits 64 bits
    Decimal, ///< any other number: a fraction, an exponent, more digits than 64 bits hold
    Text,
    DateTime,
};

/// A literal's value. Its text is a view into the statement and lives as long as that.
struct LiteralValue {
    LiteralKind kind = LiteralKind::Integer;
    bool hasDoubledQuotes = false;
    std::int64_t integer = 0;
    /// A number with its sign, a text between its quotes, a date-time between its marks.
    std::string_view raw;
    DateTime dateTime;

    /// The text that a text literal means: doubled quotes made single.
    [[nodiscard]] std::string text() const;
    /// A number as a double; beyond a double, infinity.
    [[nodiscard]] double real() const;
};

/// A complete text literal: 'O''Brien'. What no statement can hold (bytes that are not UTF-8, NUL)
/// becomes U+FFFD.
std::string textLiteral(std::string_view text);

/// A complete date-time literal: #03/14/2012 17:05:00#.
std::string dateTimeLiteral(DateTime value);

/// Reads what stands between the marks of a date-time literal: `3/14/2012`, `2012-03-14`, each with
/// or without a time, `17:05`, `17:05:00`, `5:05:00 PM`; a time alone lies on 1899-12-30. False for
/// anything else; years have four digits.
bool readDateTimeLiteral(std::string_view text, DateTime& value);

} // namespace kintar::companion::dialect
