// Dates and times as the locale orders and separates them, and reading them back.
#pragma once

#include "base/DateTime.h"

#include <string>
#include <string_view>

namespace kintar {

/// How a locale writes dates and times. The locale gives order and separators, nothing else: years
/// have four digits, digits are ASCII, blanks are ordinary ones, there is no zone.
///
/// Patterns use `yyyy`, `M`, `MM`, `d`, `dd`, `h`, `hh`, `H`, `HH`, `mm`, `ss`, `AP`; every other
/// character stands for itself.
struct LocaleFormats {
    std::string shortDate = "M/d/yyyy";
    std::string longTime = "h:mm:ss AP";

    /// "Short Date": `3/14/2012`.
    [[nodiscard]] std::string formatShortDate(DateTime value) const;
    /// "Long Time": `5:05:00 PM`.
    [[nodiscard]] std::string formatLongTime(DateTime value) const;
    /// "General date": short date, blank, long time; the date alone at midnight.
    [[nodiscard]] std::string formatGeneralDate(DateTime value) const;

    /// Reads what the three forms above write, a date or a time alone, hours with or without
    /// AM/PM, minutes without seconds, and ISO. A time alone lies on 1899-12-30.
    /// Raises run-time error 13 for anything else; two-digit years are something else.
    [[nodiscard]] DateTime parse(std::string_view text) const;
};

/// " Hh:Nn:Ss": a blank and the time of day on 24 hours, whatever the locale.
std::string formatBlankTime24(DateTime value);

} // namespace kintar
