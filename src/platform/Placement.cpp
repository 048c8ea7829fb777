#include "platform/Placement.h"

#include "base/Number.h"
#include "base/RunTimeError.h"

#include <algorithm>
#include <string>

namespace kintar::platform {

namespace {

/// About 60 metres: larger than any desktop, small enough for sums of two.
constexpr double farthestTwips = 3'000'000;

long long overlap(const Placement& placement, const ScreenArea& screen) {
    const long long across =
        std::min(placement.left + placement.width, screen.left + screen.width) -
        std::max(placement.left, screen.left);
    const long long down = std::min(placement.top + placement.height, screen.top + screen.height) -
                           std::max(placement.top, screen.top);
    return across > 0 && down > 0 ? across * down : 0;
}

int kept(int start, int size, int screenStart, int screenSize) {
    return std::clamp(start, screenStart, screenStart + std::max(0, screenSize - size));
}

} // namespace

int settingTwips(SettingsStore& settings, std::string_view section, std::string_view key,
                 int otherwise) {
    const std::string text = settings.get(section, key, std::to_string(otherwise));
    try {
        return static_cast<int>(std::clamp(leadingNumber(text), -farthestTwips, farthestTwips));
    } catch (const RunTimeError&) {
        return otherwise; // beyond any number
    }
}

Placement readPlacement(SettingsStore& settings, std::string_view section,
                        const Placement& otherwise) {
    return {settingTwips(settings, section, "Left", otherwise.left),
            settingTwips(settings, section, "Top", otherwise.top),
            settingTwips(settings, section, "Width", otherwise.width),
            settingTwips(settings, section, "Height", otherwise.height)};
}

void savePlacement(SettingsStore& settings, std::string_view section, const Placement& placement) {
    settings.save(section, "Left", std::to_string(placement.left));
    settings.save(section, "Top", std::to_string(placement.top));
    settings.save(section, "Width", std::to_string(placement.width));
    settings.save(section, "Height", std::to_string(placement.height));
}

Placement keptOnScreen(const Placement& placement, const std::vector<ScreenArea>& screens) {
    if (screens.empty()) {
        return placement;
    }
    const auto best = std::max_element(
        screens.begin(), screens.end(), [&](const ScreenArea& one, const ScreenArea& other) {
            return overlap(placement, one) < overlap(placement, other);
        });
    Placement result = placement;
    result.width = std::min(placement.width, best->width);
    result.height = std::min(placement.height, best->height);
    result.left = kept(placement.left, result.width, best->left, best->width);
    result.top = kept(placement.top, result.height, best->top, best->height);
    return result;
}

} // namespace kintar::platform
