// Draws the invented faces: cartoons that nobody takes for a photograph of somebody.
#pragma once

#include "tools/site/Face.h"

#include <QImage>

namespace kintar::site {

inline constexpr int faceWidth = 480;
inline constexpr int faceHeight = 640;

/// The face over its background, with the number `id` on a badge. Needs no fonts, no display and no
/// application object; the same input gives the same pixels.
QImage paintFace(const Face& face, int id);

} // namespace kintar::site
