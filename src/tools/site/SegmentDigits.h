// Numbers drawn without a font.
#pragma once

#include <QRectF>

class QPainter;
class QColor;

namespace kintar::site {

/// Draws `number` (0 or more) with seven-segment digits, centred in `area` and as high as it.
void drawNumber(QPainter& painter, const QRectF& area, int number, const QColor& colour);

} // namespace kintar::site
