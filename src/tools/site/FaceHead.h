// Head, ears and what is in a face. Coordinates are those of the whole picture.
#pragma once

#include "tools/site/Face.h"

#include <QPainterPath>

class QPainter;

namespace kintar::site {

inline constexpr double faceCentreX = 240;
inline constexpr double eyeLine = 292;

/// The outline of the head without ears.
QPainterPath headOutline(const Face& face);
/// Half the width of the head at the height of the eyes.
double headHalfWidth(const Face& face);

void paintHead(QPainter& painter, const Face& face);
void paintBeard(QPainter& painter, const Face& face);
void paintFeatures(QPainter& painter, const Face& face);
void paintGlasses(QPainter& painter, const Face& face);

} // namespace kintar::site
