// The viewer of a report: its pages, one at a time.
#pragma once

#include "reports/PageCanvas.h"

#include <QWidget>

#include <functional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QScrollArea;
class QSpinBox;

namespace kintar::reports {

/// Zoom, page by page, search; print and export are what its owner makes of them.
class ReportView final : public QWidget {
public:
    ReportView();

    void showReport(std::shared_ptr<LaidOutReport> report);
    /// A line for the operator: an error, or how far something is.
    void showStatus(const std::string& text);
    [[nodiscard]] std::size_t page() const { return canvas_->page(); }

    /// What the two buttons do.
    void onPrint(std::function<void()> print) { wantPrint_ = std::move(print); }
    void onExport(std::function<void()> save) { wantExport_ = std::move(save); }

private:
    void build();
    void nameControls();
    void connectControls();
    void goToPage(int page);
    void turnPage(int pages);
    void applyZoom();
    void search();
    [[nodiscard]] int pageCount() const;

    std::function<void()> wantPrint_;
    std::function<void()> wantExport_;
    std::shared_ptr<LaidOutReport> report_;
    PageCanvas* canvas_ = nullptr;
    QScrollArea* area_ = nullptr;
    QPushButton* previous_ = nullptr;
    QPushButton* next_ = nullptr;
    QSpinBox* pageBox_ = nullptr;
    QLabel* pages_ = nullptr;
    QComboBox* zoom_ = nullptr;
    QLineEdit* searchText_ = nullptr;
    QPushButton* find_ = nullptr;
    QPushButton* print_ = nullptr;
    QPushButton* export_ = nullptr;
    QLabel* status_ = nullptr;
};

} // namespace kintar::reports
