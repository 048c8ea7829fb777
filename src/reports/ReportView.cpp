#include "reports/ReportView.h"

#include "platform/qt/Controls.h"
#include "platform/qt/PlainText.h"
#include "reports/PageSearch.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include <array>

namespace kintar::reports {
namespace {

constexpr std::array<int, 7> zoomPercents{50, 75, 100, 125, 150, 200, 300};
constexpr int usualZoom = 2;
constexpr double percent = 100;

} // namespace

ReportView::ReportView() {
    build();
    nameControls();
    connectControls();
    showReport(nullptr);
}

void ReportView::build() {
    canvas_ = new PageCanvas;
    area_ = new QScrollArea;
    area_->setWidget(canvas_);
    area_->setAlignment(Qt::AlignCenter);
    area_->setBackgroundRole(QPalette::Mid);
    previous_ = new QPushButton(QStringLiteral("Previous"));
    next_ = new QPushButton(QStringLiteral("Next"));
    pageBox_ = new QSpinBox;
    pages_ = new QLabel;
    zoom_ = new QComboBox;
    for (const int zoom : zoomPercents) {
        zoom_->addItem(QStringLiteral("%1 %").arg(zoom), zoom);
    }
    zoom_->setCurrentIndex(usualZoom);
    searchText_ = new QLineEdit;
    searchText_->setPlaceholderText(QStringLiteral("Find in this report"));
    find_ = new QPushButton(QStringLiteral("Find Next"));
    print_ = new QPushButton(QStringLiteral("Print"));
    export_ = new QPushButton(QStringLiteral("Export As PDF"));
    status_ = new QLabel;
    platform::makePlain(*status_);
    auto* bar = new QHBoxLayout;
    for (QWidget* control : std::initializer_list<QWidget*>{
             previous_, pageBox_, pages_, next_, zoom_, searchText_, find_, print_, export_}) {
        bar->addWidget(control);
    }
    bar->setStretchFactor(searchText_, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(bar);
    all->addWidget(area_, 1);
    all->addWidget(status_);
}

void ReportView::nameControls() {
    platform::nameControl(*this, "CRV", "report viewer", QStringLiteral("Report"));
    platform::nameControl(*previous_, "cmdPrevious", "command button",
                          QStringLiteral("Previous Page"));
    platform::nameControl(*next_, "cmdNext", "command button", QStringLiteral("Next Page"));
    platform::nameControl(*pageBox_, "txtPage", "number box", QStringLiteral("Page"));
    platform::nameControl(*zoom_, "cboZoom", "combo box", QStringLiteral("Zoom"));
    platform::nameControl(*searchText_, "txtFind", "text box",
                          QStringLiteral("Find in this report"));
    platform::nameControl(*find_, "cmdFind", "command button", find_->text());
    platform::nameControl(*print_, "cmdPrint", "command button", print_->text());
    platform::nameControl(*export_, "cmdExport", "command button", export_->text());
    platform::nameControl(*status_, "lblStatus", "label", {});
}

void ReportView::connectControls() {
    connect(previous_, &QPushButton::clicked, this, [this] { turnPage(-1); });
    connect(next_, &QPushButton::clicked, this, [this] { turnPage(1); });
    connect(pageBox_, &QSpinBox::valueChanged, this, [this](int page) { goToPage(page - 1); });
    connect(zoom_, &QComboBox::currentIndexChanged, this, &ReportView::applyZoom);
    connect(find_, &QPushButton::clicked, this, &ReportView::search);
    connect(searchText_, &QLineEdit::returnPressed, this, &ReportView::search);
    connect(searchText_, &QLineEdit::textChanged, canvas_, &PageCanvas::setMarked);
    connect(print_, &QPushButton::clicked, this, [this] { wantPrint_(); });
    connect(export_, &QPushButton::clicked, this, [this] { wantExport_(); });
}

int ReportView::pageCount() const {
    return report_ ? static_cast<int>(report_->pages.pageCount()) : 0;
}

void ReportView::showReport(std::shared_ptr<LaidOutReport> report) {
    report_ = std::move(report);
    canvas_->setReport(report_);
    applyZoom();
    const QSignalBlocker quiet(pageBox_);
    pageBox_->setRange(pageCount() > 0 ? 1 : 0, pageCount());
    pages_->setText(QStringLiteral("of %1").arg(pageCount()));
    for (QWidget* control : std::initializer_list<QWidget*>{pageBox_, find_, print_, export_}) {
        control->setEnabled(pageCount() > 0);
    }
    goToPage(0);
}

void ReportView::showStatus(const std::string& text) {
    status_->setText(platform::oneLine(text));
}

void ReportView::goToPage(int page) {
    canvas_->setPage(static_cast<std::size_t>(std::max(0, page)));
    area_->verticalScrollBar()->setValue(0);
    const QSignalBlocker quiet(pageBox_);
    pageBox_->setValue(page + 1);
    previous_->setEnabled(page > 0);
    next_->setEnabled(page + 1 < pageCount());
}

void ReportView::turnPage(int pages) {
    goToPage(static_cast<int>(canvas_->page()) + pages);
}

void ReportView::applyZoom() {
    canvas_->setZoom(zoom_->currentData().toInt() / percent);
}

void ReportView::search() {
    if (!report_ || searchText_->text().isEmpty()) {
        return;
    }
    const auto found = findPage(report_->pages, searchText_->text().toStdString(), canvas_->page());
    if (found) {
        goToPage(static_cast<int>(*found));
    }
    showStatus(found ? "" : "Not found in this report.");
}

} // namespace kintar::reports
