// One page of a report on the screen.
#pragma once

#include "reports/PdfWorker.h"
#include "reports/engine/qt/PagePainter.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace kintar::reports {

class PageCanvas final : public QWidget {
public:
    void setReport(std::shared_ptr<LaidOutReport> report);
    void setPage(std::size_t page);
    /// 1 is the size on paper.
    void setZoom(double zoom);
    /// Text to be marked; none where it is empty.
    void setMarked(const QString& text);
    [[nodiscard]] std::size_t page() const { return page_; }
    [[nodiscard]] double zoom() const { return zoom_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void fitSize();

    std::shared_ptr<LaidOutReport> report_;
    std::optional<PagePainter> painter_;
    std::size_t page_ = 0;
    double zoom_ = 1;
    QString marked_;
};

} // namespace kintar::reports
