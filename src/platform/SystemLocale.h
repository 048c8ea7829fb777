// The date and time formats of the system's locale, and of a locale by name.
#pragma once

#include "base/LocaleFormats.h"

#include <optional>
#include <string_view>

namespace kintar::platform {

/// The formats that `LC_ALL`, `LC_TIME` or `LANG` names, the first of them that is set; "C" and
/// "POSIX", and names that nothing is known of, are `en_US`.
LocaleFormats systemLocaleFormats();

/// The formats of a locale such as `de-DE`, `en_US.UTF-8`, `C`, and `iso` (2012-03-14, 17:05:00);
/// nothing for a name that nothing is known of.
std::optional<LocaleFormats> localeFormats(std::string_view name);

/// A toolkit's short date pattern as ours: the order of the fields, the separators, a year of four
/// digits. The text "d. MMM yy" becomes "d. MM yyyy".
std::string shortDatePattern(std::string_view toolkitPattern);

/// A toolkit's long time pattern as ours: hours on 12 or 24, colons or points between the fields,
/// AM/PM where it stands; no zone and no words.
std::string longTimePattern(std::string_view toolkitPattern);

} // namespace kintar::platform
