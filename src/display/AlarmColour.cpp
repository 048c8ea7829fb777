#include "display/AlarmColour.h"

#include <algorithm>
#include <cmath>

namespace kintar::display {
namespace {

constexpr Rgb white{255, 255, 255};
constexpr Rgb black{0, 0, 0};
/// What running text needs to be read by most people. White or black always reach it.
constexpr double readable = 4.5;

double linear(std::uint8_t channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(Rgb colour) {
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) +
           0.0722 * linear(colour.blue);
}

} // namespace

Rgb colourOf(std::int32_t foreColor) {
    const auto bits = static_cast<std::uint32_t>(foreColor);
    return {static_cast<std::uint8_t>(bits & 0xFFU), static_cast<std::uint8_t>(bits >> 8U & 0xFFU),
            static_cast<std::uint8_t>(bits >> 16U & 0xFFU)};
}

std::optional<int> systemColourIndex(std::int32_t foreColor) {
    if (foreColor >= 0) {
        return std::nullopt;
    }
    return static_cast<int>(static_cast<std::uint32_t>(foreColor) & 0xFFU);
}

double contrast(Rgb a, Rgb b) {
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

Rgb readableBackground(Rgb text, Rgb preferred) {
    for (const Rgb background : {preferred, white}) {
        if (contrast(text, background) >= readable) {
            return background;
        }
    }
    return black;
}

} // namespace kintar::display
