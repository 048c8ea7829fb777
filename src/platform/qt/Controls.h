// Controls by the names that the rules give them, for those who drive or read windows.
#pragma once

#include <QString>

#include <string>
#include <vector>

class QObject;
class QWidget;

namespace kintar::platform {

/// What kind a control is, as documents call it: "label", "image", "timer", ...
void nameControl(QObject& control, const char* name, const char* kind);

/// Names a control that can be seen: its object name is the control's name (array members as
/// `Label_1`), its accessible name what a screen reader should say, its accessible description the
/// control's name again.
void nameControl(QWidget& control, const char* name, const char* kind,
                 const QString& accessibleName);

struct ControlInfo {
    std::string name;
    std::string kind;
    std::string accessibleName; ///< what a screen reader says
    std::string role;           ///< as the accessibility bus names it; empty: it is not on there
    std::string text;   ///< caption, or the captions of a tab strip, as the operator reads it
    bool shown = false; ///< whether it is to be seen once its window is
    bool enabled = false;

    bool operator==(const ControlInfo&) const = default;
};

/// The named controls of a window, in the order in which it holds them.
std::vector<ControlInfo> controlsOf(const QWidget& window);

} // namespace kintar::platform
