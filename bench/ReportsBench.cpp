// The who-is-in build beside the one best statement for its rows, and a report of 50,000 rows as
// PDF beside the same lines of text written with no layout.
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

constexpr int holders = 100000;
constexpr int usesOfACard = 10;
constexpr int pdfRows = 50000;

void fillSite(testing::ReportSite& site) {
    site.run("BEGIN");
    site.run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
             std::to_string(holders) +
             ") INSERT INTO Names SELECT i, 'Holder' || (i * 7919 % 100003), 'Some', 3, 1, 0, 0 "
             "FROM n");
    site.run("INSERT INTO Cards SELECT ID, ID, 3, '1', '1', ID % 20 <> 0, NULL, NULL, 0, 0 FROM "
             "Names");
    // Of ten uses of a card, up to three lie in the last 48 hours; their order is mixed.
    site.run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
             std::to_string(holders * usesOfACard) +
             ") INSERT INTO LocCards SELECT i, (i * 7919) % " + std::to_string(holders) +
             " + 1, CASE i % 3 WHEN 0 THEN 31 ELSE 32 END, "
             "datetime('2012-03-14 17:05:00', '-' || (i * 104729 % 600000) || ' seconds'), "
             "i % 2 + 1, substr('INO', i % 3 + 1, 1), 'N', 'N', 'N' FROM n");
    site.run("COMMIT");
    site.run("ANALYZE");
}

constexpr const char* bestStatement =
    "SELECT u.Loc, l.Name, u.LastDev, d.Name, n.LName || ', ' || n.FName, c.Name, u.LastDate "
    "FROM Cards k JOIN LocCards u ON u.ID = (SELECT x.ID FROM LocCards x WHERE x.CardID = k.ID "
    "AND x.Loc IN (31, 32) AND x.LastDate > '2012-03-12 17:05:00' ORDER BY x.LastDate DESC LIMIT "
    "1) "
    "LEFT JOIN Loc l ON l.Loc = u.Loc LEFT JOIN Dev d ON d.Loc = u.Loc AND d.Device = u.LastDev "
    "LEFT JOIN Names n ON n.ID = k.NameID LEFT JOIN Company c ON c.LocGrp = n.LocGrp AND "
    "c.Company = n.Company WHERE k.LocGrp = 3 AND k.Status <> 0 AND u.InOut1 = 'I' "
    "ORDER BY k.NameID";

std::size_t stepAll(const std::string& path) {
    const companion::sqlite::DatabaseHandle database =
        companion::sqlite::openDatabase(path, companion::sqlite::Access::ReadOnly);
    const companion::sqlite::StatementHandle statement =
        companion::sqlite::prepare(database.get(), bestStatement);
    std::size_t rows = 0;
    while (sqlite3_step(statement.get()) == SQLITE_ROW) {
        for (int column = 0; column < 7; ++column) {
            sqlite3_column_text(statement.get(), column);
        }
        ++rows;
    }
    return rows;
}

bool sameRows(testing::ReportSite& site) {
    return site.build() && site.rows("Select Name From InRpt").size() == stepAll(site.path());
}

int measureBuild() {
    testing::ReportSite site;
    fillSite(site);
    if (!sameRows(site)) {
        std::fprintf(stderr, "reports_bench: the build and the statement differ\n");
        return 1;
    }
    bench::beside(
        "who-is-in build, 100,000 holders, 1,000,000 uses / one statement", 5,
        [&site] { site.build(); }, [&site] { stepAll(site.path()); }, 3.0);
    return 0;
}

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
    return measureBuild();
}
