// What the override facade needs of its window.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace kintar {

/// The default instance of `frmOvrSchedule`. Storing a value does not load it; members may throw.
class OverrideForm {
public:
    virtual ~OverrideForm() = default;
    virtual void PointID(std::int32_t value) = 0;
    virtual void PointType(std::int16_t value) = 0;
    virtual void PointName(const std::string& value) = 0;
    virtual void LocName(const std::string& value) = 0;
    virtual void OprName(const std::string& value) = 0;
    /// The number as text.
    virtual void OprID(const std::string& value) = 0;
    virtual void SecureOpt(bool value) = 0;
    virtual void OpenOpt(bool value) = 0;
    virtual void TZOpt(bool value) = 0;
    virtual void ArmOpt(bool value) = 0;
    virtual void ByPassOpt(bool value) = 0;
    /// Shows the window modeless, which loads it the first time.
    virtual void showEditor() = 0;
    /// Puts the window above all others, neither moved, sized nor activated, and 100 ms later at
    /// the top of the ordinary ones; then calls `afterwards`, or drops it where the window has
    /// gone.
    virtual void bringToFront(std::function<void()> afterwards) = 0;
};

} // namespace kintar
