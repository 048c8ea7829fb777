// The windows on the display, other programs' included.
#pragma once

#include <QString>

namespace kintar::demo {

/// Whether a window with exactly this title is shown. Only on X11; elsewhere no program may see
/// another one's windows, and the answer is false.
bool isWindowShown(const QString& title);

/// Whether windows of other programs can be seen at all.
bool canSeeWindows();

} // namespace kintar::demo
