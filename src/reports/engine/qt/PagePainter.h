// Paints the pages of a report.
#pragma once

#include "reports/engine/Pagination.h"
#include "reports/engine/qt/QtTextMeasure.h"

#include <QFont>
#include <QFontMetricsF>
#include <QString>

#include <vector>

class QPainter;

namespace kintar::reports {

class PagePainter {
public:
    explicit PagePainter(const ReportDefinition& definition);

    /// Paints items whose lengths are points; one point is `scale` units of the painter.
    /// Occurrences of `marked`, letter case ignored, get a coloured ground; none where it is empty.
    void paint(QPainter& painter, const std::vector<Item>& items, double scale,
               const QString& marked = {}) const;

private:
    void paintText(QPainter& painter, const Item& item, const QString& marked) const;

    const ReportDefinition& definition_;
    std::vector<QFont> fonts_;
    std::vector<QFontMetricsF> metrics_;
};

} // namespace kintar::reports
