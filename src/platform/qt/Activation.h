// New windows that the operator is to type into.
#pragma once

class QWidget;

namespace kintar::platform {

/// Shows a window. Giving the keyboard to a new window is the window manager's part; where there is
/// none, the window takes it, unless it is one that shows without activating.
void showForInput(QWidget& window);

} // namespace kintar::platform
