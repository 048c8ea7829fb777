// The patterned wall behind an invented face.
#pragma once

#include "tools/site/Face.h"

class QPainter;

namespace kintar::site {

void paintGround(QPainter& painter, const Face& face);

} // namespace kintar::site
