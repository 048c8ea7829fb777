// Hair and what is worn on it.
#pragma once

#include "tools/site/Face.h"

class QPainter;

namespace kintar::site {

/// What lies behind head and shoulders.
void paintHairBehind(QPainter& painter, const Face& face);
/// What lies on the head.
void paintHairInFront(QPainter& painter, const Face& face);

} // namespace kintar::site
