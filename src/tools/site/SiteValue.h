// Values of a site's rows on their way into a database.
#pragma once

#include "base/DateTime.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kintar::site {

/// True as -1, False as 0.
enum class YesNo : std::int8_t { Yes = -1, No = 0 };
constexpr YesNo yesNo(bool value) {
    return value ? YesNo::Yes : YesNo::No;
}

/// Null, a whole number or Yes/No, a text (a view), a date-time.
using SiteValue = std::variant<std::nullptr_t, std::int64_t, std::string_view, DateTime>;

inline SiteValue siteValue(std::int64_t value) {
    return value;
}
inline SiteValue siteValue(int value) {
    return static_cast<std::int64_t>(value);
}
inline SiteValue siteValue(YesNo value) {
    return static_cast<std::int64_t>(value);
}
inline SiteValue siteValue(std::string_view value) {
    return value;
}
inline SiteValue siteValue(const std::string& value) {
    return std::string_view(value);
}
inline SiteValue siteValue(const char* value) {
    return std::string_view(value);
}
inline SiteValue siteValue(DateTime value) {
    return value;
}
inline SiteValue siteValue(std::nullptr_t) {
    return nullptr;
}
template <class T>
SiteValue siteValue(const std::optional<T>& value) {
    return value ? siteValue(*value) : SiteValue(nullptr);
}

} // namespace kintar::site
