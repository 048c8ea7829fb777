// Where a window stands, as settings keep it and as screens allow it.
#pragma once

#include "platform/Platform.h"

#include <string_view>
#include <vector>

namespace kintar::platform {

/// Frame position and client size, in twips.
struct Placement {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Placement&) const = default;
};

/// The usable part of a screen, in twips.
struct ScreenArea {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

/// A number of the settings as twips, cut to what a window can have; `otherwise` where it cannot be
/// read.
int settingTwips(SettingsStore& settings, std::string_view section, std::string_view key,
                 int otherwise);

/// "Left", "Top", "Width" and "Height" of a section, each with its default.
Placement readPlacement(SettingsStore& settings, std::string_view section,
                        const Placement& otherwise);

void savePlacement(SettingsStore& settings, std::string_view section, const Placement& placement);

/// The placement moved back inside a screen: the one it overlaps most, or the first where it lies
/// on none (its monitor has gone). A window larger than that screen is cut to it. One that lies
/// within a screen is not touched; neither is any where no screen is known.
Placement keptOnScreen(const Placement& placement, const std::vector<ScreenArea>& screens);

} // namespace kintar::platform
