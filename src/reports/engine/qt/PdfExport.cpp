#include "reports/engine/qt/PdfExport.h"

#include "base/Unicode.h"
#include "reports/engine/ReportError.h"
#include "reports/engine/qt/PagePainter.h"

#include <QLocale>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

namespace kintar::reports {
namespace {

constexpr PageSize a4{595, 842};
constexpr PageSize letter{612, 792};
constexpr int dotsPerInch = 720;
constexpr double dotsPerPoint = dotsPerInch / 72.0;

void writePages(const PagedReport& pages, const PagePainter& pagePainter, QPdfWriter& writer,
                const std::atomic<bool>& cancelled) {
    QPainter painter;
    if (!painter.begin(&writer)) {
        throw ReportError("the PDF file cannot be written");
    }
    for (std::size_t page = 0; page < pages.pageCount() && !cancelled; ++page) {
        if (page > 0 && !writer.newPage()) {
            throw ReportError("the PDF file cannot be written");
        }
        pagePainter.paint(painter, pages.pageItems(page), dotsPerPoint);
    }
    painter.end();
}

} // namespace

PageSize usualPaper() {
    return QLocale::system().measurementSystem() == QLocale::ImperialUSSystem ? letter : a4;
}

std::optional<PageSize> paperNamed(std::string_view name) {
    const std::string folded = unicode::fold(name);
    if (folded == "a4") {
        return a4;
    }
    return folded == "letter" ? std::optional(letter) : std::nullopt;
}

void exportPdf(const Report& report, PageSize paper, const std::string& path,
               const std::atomic<bool>& cancelled) {
    QtTextMeasure measure(report.definition());
    const PagedReport pages(report, measure, paper, cancelled);
    QSaveFile file(QString::fromStdString(path));
    const auto failed = [&path, &file] {
        return ReportError("the file " + path +
                           " cannot be written: " + file.errorString().toStdString());
    };
    if (!file.open(QIODevice::WriteOnly)) {
        throw failed();
    }
    {
        QPdfWriter writer(&file);
        writer.setResolution(dotsPerInch);
        writer.setPageSize(QPageSize(QSizeF(paper.width, paper.height), QPageSize::Point));
        writer.setPageMargins(QMarginsF());
        writer.setTitle(QString::fromStdString(report.definition().title));
        writer.setCreator(QStringLiteral("Kintar3"));
        writePages(pages, PagePainter(report.definition()), writer, cancelled);
    }
    if (cancelled) {
        file.cancelWriting();
        return;
    }
    if (!file.commit()) {
        throw failed();
    }
}

} // namespace kintar::reports
