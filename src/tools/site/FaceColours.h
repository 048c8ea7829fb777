// The colours of the invented faces.
#pragma once

#include "tools/site/Face.h"

#include <QColor>

namespace kintar::site {

QColor skinColour(const Face& face);
QColor hairColour(const Face& face);
QColor groundColour(const Face& face);
QColor clothesColour(int number);
QColor eyeColour(const Face& face);

} // namespace kintar::site
