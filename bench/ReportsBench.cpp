// A report of 50,000 rows as PDF beside the same lines of text written with no layout.
#include "Beside.h"
#include "reports/ReportSite.h"
#include "reports/engine/EngineTwins.h"
#include "reports/engine/OpenReport.h"
#include "reports/engine/qt/PagePainter.h"
#include "reports/engine/qt/PdfExport.h"

#include <QFile>
#include <QGuiApplication>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

using namespace kintar;

constexpr int pdfRows = 50000;

std::string textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The same texts at the same places, with no layout: what the library itself takes.
void writePlain(const std::vector<std::vector<reports::Item>>& pages,
                const reports::ReportDefinition& definition, const std::string& path) {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::WriteOnly)) {
        std::exit(1);
    }
    QPdfWriter writer(&file);
    writer.setResolution(720);
    writer.setPageSize(QPageSize(QSizeF(595, 842), QPageSize::Point));
    writer.setPageMargins(QMarginsF());
    QPainter painter(&writer);
    const std::vector<QFont> fonts = reports::fontsOf(definition);
    for (std::size_t page = 0; page < pages.size(); ++page) {
        if (page > 0) {
            writer.newPage();
        }
        for (const reports::Item& item : pages[page]) {
            painter.setFont(fonts.at(item.style));
            painter.drawText(QPointF(item.x * 10, item.y * 10 + 90),
                             QString::fromStdString(item.text));
        }
    }
}

void measurePdf(const std::string& reportFile) {
    testing::RowsRecord record;
    record.rows = [](std::string_view) {
        Recordset rows({{"Loc", ColumnType::Integer},
                        {"LocName", ColumnType::Text},
                        {"Dev", ColumnType::Integer},
                        {"DevName", ColumnType::Text},
                        {"Name", ColumnType::Text},
                        {"Company", ColumnType::Text},
                        {"LastUsed", ColumnType::DateTime}});
        for (int row = 0; row < pdfRows; ++row) {
            rows.addInteger(row / 10000);
            rows.addText("Location " + std::to_string(row / 10000));
            rows.addInteger(row / 1000);
            rows.addText("Reader " + std::to_string(row / 1000));
            rows.addText("Holder " + std::to_string(row) + ", Somebody");
            rows.addText("A Company of Some Length");
            rows.addText("2012-03-14 10:00:00");
        }
        return rows;
    };
    ClosedConnection site;
    testing::NoDatabases databases;
    const reports::OpenReport open(textOf(reportFile), reportFile);
    const auto report =
        open.run({record, site, databases}, *DateTime::fromFields(2012, 3, 14), LocaleFormats());
    const testing::ScratchFolder folder;
    const std::atomic<bool> neverCancelled = false;

    reports::QtTextMeasure measure(report->definition());
    const reports::PagedReport paged(*report, measure, {}, neverCancelled);
    std::vector<std::vector<reports::Item>> pages;
    for (std::size_t page = 0; page < paged.pageCount(); ++page) {
        pages.push_back(paged.pageItems(page));
        std::erase_if(pages.back(), [](const reports::Item& item) { return item.text.empty(); });
    }
    bench::beside(
        "report of 50,000 rows to PDF / the same lines with no layout", 3,
        [&] { reports::exportPdf(*report, {}, folder / "a.pdf", neverCancelled); },
        [&] { writePlain(pages, report->definition(), folder / "b.pdf"); }, 2.0);
    const double first = bench::secondsOf([&] {
        reports::QtTextMeasure fresh(report->definition());
        const reports::PagedReport again(*report, fresh, {}, neverCancelled);
        QImage image(794, 1123, QImage::Format_RGB32);
        QPainter painter(&image);
        reports::PagePainter(report->definition()).paint(painter, again.pageItems(0), 96.0 / 72);
    });
    std::printf("%-58s %12.6f s (%zu pages laid out)\n", "its first page in the preview", first,
                paged.pageCount());
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QGuiApplication application(argc, argv);
    measurePdf(std::string(KINTAR_REPORT_FILES) + "/InRptc.rpt");
    return 0;
}
