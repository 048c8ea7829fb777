// System colours by the index that clients know them by.
#pragma once

#include <QColor>

namespace kintar::display {

/// The desktop's colour for an index from 0 to 24; that of window text for any other.
QColor systemColour(int index);

} // namespace kintar::display
