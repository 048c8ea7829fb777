// Twips, the unit of window sizes in rules and settings.
#pragma once

namespace kintar {

/// 1440 twips to the inch, 96 logical pixels to the inch.
inline constexpr int twipsPerPixel = 15;

constexpr int pixelsFromTwips(int twips) {
    // Rounded half away from zero, so that a position left of the first screen does not drift.
    return (twips >= 0 ? twips + twipsPerPixel / 2 : twips - twipsPerPixel / 2) / twipsPerPixel;
}

constexpr int twipsFromPixels(int pixels) {
    return pixels * twipsPerPixel;
}

} // namespace kintar
