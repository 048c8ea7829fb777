// The printer map of the who-is-in report: which locations print together, and where.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar::reports {

/// What the map changes: both stay as they are where it says nothing.
struct PrinterChoice {
    std::string locationList;
    std::string printer;
    bool operator==(const PrinterChoice&) const = default;
};

/// Applies the lines of a map, `locations ";" printer name`, for location `loc`.
///
/// The printer is overwritten by every line read, so that without a matching line the last line's
/// stands. A line with commas matches only where the location stands between two of them; a line
/// without matches wherever the number's digits occur, also inside a longer number. A matching line
/// is used as it stands: without its last character where it has commas, trimmed where it has none.
/// All of that is meant. A byte order mark is no part of the first line; a line ends with CR, LF or
/// both.
void applyPrinterMap(std::string_view map, std::int32_t loc, PrinterChoice& choice);

} // namespace kintar::reports
