// Window requests that are written down instead of made.
#pragma once

#include "platform/WindowRequests.h"

#include <functional>
#include <vector>

namespace kintar::testing {

class RecordingWindowRequests final : public platform::WindowRequests {
public:
    struct Placed {
        platform::WindowId window;
        int insertAfter;
        unsigned flags;
        bool operator==(const Placed&) const = default;
    };

    void SetWindowPos(platform::WindowId window, platform::InsertAfter insertAfter,
                      unsigned flags) override {
        placed.push_back({window, static_cast<int>(insertAfter), flags});
    }
    void SetForegroundWindow(platform::WindowId window) override { foreground.push_back(window); }

    void ShowWindow(platform::WindowId window, platform::ShowCommand /*command*/) override {
        restored.push_back(window);
    }
    void CoverFullScreen(platform::WindowId window) override { covering.push_back(window); }

    std::vector<Placed> placed;
    std::vector<platform::WindowId> foreground;
    std::vector<platform::WindowId> restored;
    std::vector<platform::WindowId> covering;
};

} // namespace kintar::testing
