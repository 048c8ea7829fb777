// The colours of the alarm text: the client's, and a background on which it can be read.
#pragma once

#include <cstdint>
#include <optional>

namespace kintar::display {

struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    bool operator==(const Rgb&) const = default;
};

/// A colour as clients set it: 0x00BBGGRR; bits above those of blue are ignored.
Rgb colourOf(std::int32_t foreColor);

/// A negative value names a system colour by its index, 0 to 24: the low byte. Nothing for a value
/// that is not negative.
std::optional<int> systemColourIndex(std::int32_t foreColor);

/// The contrast of two colours, 1 (none) to 21 (black on white).
double contrast(Rgb a, Rgb b);

/// A background behind `text`: `preferred` where text can be read on it, else white, else black.
/// The result has a contrast of 4.5 at least.
Rgb readableBackground(Rgb text, Rgb preferred);

} // namespace kintar::display
