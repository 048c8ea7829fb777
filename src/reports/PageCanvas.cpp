#include "reports/PageCanvas.h"

#include <QPainter>

#include <cmath>

namespace kintar::reports {
namespace {

constexpr double pixelsPerPoint = 96.0 / 72.0;

} // namespace

void PageCanvas::setReport(std::shared_ptr<LaidOutReport> report) {
    report_ = std::move(report);
    painter_.reset();
    if (report_) {
        painter_.emplace(report_->report->definition());
    }
    page_ = 0;
    fitSize();
}

void PageCanvas::setPage(std::size_t page) {
    page_ = page;
    update();
}

void PageCanvas::setZoom(double zoom) {
    zoom_ = zoom;
    fitSize();
}

void PageCanvas::setMarked(const QString& text) {
    marked_ = text;
    update();
}

void PageCanvas::fitSize() {
    const PageSize size = report_ ? report_->pages.size() : PageSize();
    setFixedSize(static_cast<int>(std::lround(size.width * pixelsPerPoint * zoom_)),
                 static_cast<int>(std::lround(size.height * pixelsPerPoint * zoom_)));
    update();
}

void PageCanvas::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    if (report_ && page_ < report_->pages.pageCount()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter_->paint(painter, report_->pages.pageItems(page_), pixelsPerPoint * zoom_, marked_);
    }
}

} // namespace kintar::reports
