#include "display/SystemColours.h"

#include <QGuiApplication>
#include <QPalette>

#include <array>

namespace kintar::display {
namespace {

struct Role {
    QPalette::ColorGroup group;
    QPalette::ColorRole role;
};

constexpr auto active = QPalette::Active;
constexpr auto inactive = QPalette::Inactive;
constexpr auto disabled = QPalette::Disabled;

/// In the order of their indexes.
constexpr std::array<Role, 25> roles{{
    {active, QPalette::Window},            // scroll bars
    {active, QPalette::Dark},              // the desktop
    {active, QPalette::Highlight},         // the active title
    {inactive, QPalette::Highlight},       // inactive titles
    {active, QPalette::Window},            // menus
    {active, QPalette::Base},              // window background
    {active, QPalette::Shadow},            // window frame
    {active, QPalette::WindowText},        // menu text
    {active, QPalette::Text},              // window text
    {active, QPalette::HighlightedText},   // active title text
    {active, QPalette::Window},            // active border
    {inactive, QPalette::Window},          // inactive border
    {active, QPalette::Mid},               // workspace
    {active, QPalette::Highlight},         // selection
    {active, QPalette::HighlightedText},   // selected text
    {active, QPalette::Button},            // button face
    {active, QPalette::Mid},               // button shadow
    {disabled, QPalette::WindowText},      // disabled text
    {active, QPalette::ButtonText},        // button text
    {inactive, QPalette::HighlightedText}, // inactive title text
    {active, QPalette::Light},             // highlight of raised things
    {active, QPalette::Shadow},            // dark shadow of raised things
    {active, QPalette::Midlight},          // light edge of raised things
    {active, QPalette::ToolTipText},       // tooltip text
    {active, QPalette::ToolTipBase},       // tooltip background
}};
constexpr std::size_t windowText = 8;

} // namespace

QColor systemColour(int index) {
    const auto at = static_cast<std::size_t>(index);
    const Role role = index >= 0 && at < roles.size() ? roles.at(at) : roles.at(windowText);
    return QGuiApplication::palette().color(role.group, role.role);
}

} // namespace kintar::display
