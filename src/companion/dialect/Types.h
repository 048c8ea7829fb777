// Which types can meet.
#pragma once

#include "server/Recordset.h"

#include <cstdint>

namespace kintar::companion::dialect {

/// Types as far as comparing goes: numbers and Yes/No are one class.
enum class TypeClass : std::uint8_t { Unknown, Number, Text, DateTime };

constexpr TypeClass classOf(ColumnType type) {
    switch (type) {
    case ColumnType::Integer:
    case ColumnType::Real:
    case ColumnType::YesNo:
        return TypeClass::Number;
    case ColumnType::Text:
        return TypeClass::Text;
    case ColumnType::DateTime:
        return TypeClass::DateTime;
    case ColumnType::Any:
        break;
    }
    return TypeClass::Unknown;
}

/// Whether two values can be compared. A text and a number can: as numbers.
constexpr bool comparable(ColumnType a, ColumnType b) {
    const TypeClass x = classOf(a);
    const TypeClass y = classOf(b);
    return x == TypeClass::Unknown || y == TypeClass::Unknown ||
           (x == TypeClass::DateTime) == (y == TypeClass::DateTime);
}

constexpr bool isNumber(ColumnType type) {
    return classOf(type) == TypeClass::Number;
}

/// Numbers without fractions: values of two such columns are equal in every table alike.
constexpr bool isWhole(ColumnType type) {
    return type == ColumnType::Integer || type == ColumnType::YesNo;
}

constexpr bool isText(ColumnType type) {
    return classOf(type) == TypeClass::Text;
}

/// Whether a comparison of the two is one of a text with a number.
constexpr bool isTextWithNumber(ColumnType a, ColumnType b) {
    return (isText(a) && isNumber(b)) || (isNumber(a) && isText(b));
}

} // namespace kintar::companion::dialect
