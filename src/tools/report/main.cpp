// kintar-report: the printed lists of a site, without the server.
#include "platform/qt/CupsPrinters.h"
#include "reports/engine/qt/PdfExport.h"
#include "tools/report/Options.h"
#include "tools/report/ReportMaker.h"

#include <QGuiApplication>
#include <QLoggingCategory>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace {

using namespace kintar;

platform::PrinterList printersOf(platform::CupsPrinters& printers) {
    platform::PrinterList found;
    printers.list([&found](const platform::PrinterList& list) {
        found = list;
        QCoreApplication::exit(0);
    });
    QCoreApplication::exec();
    return found;
}

/// The printer asked for; else the map's, where there is one of that name; else the system's.
std::string chosenPrinter(const report::Options& options, const std::string& mapped,
                          const platform::PrinterList& list) {
    const auto isThere = [&list](const std::string& name) {
        for (const platform::Printer& printer : list.printers) {
            if (printer.deviceName == name) {
                return true;
            }
        }
        return false;
    };
    if (!options.printer.empty()) {
        if (!isThere(options.printer)) {
            throw std::runtime_error("There is no printer '" + options.printer + "'.");
        }
        return options.printer;
    }
    if (list.printers.empty()) {
        throw std::runtime_error("There is no printer.");
    }
    if (isThere(mapped)) {
        return mapped;
    }
    return list.defaultDevice.empty() ? list.printers.front().deviceName : list.defaultDevice;
}

void print(const report::Options& options, const std::string& mapped, const std::string& pdfFile,
           const std::string& title) {
    platform::CupsPrinters printers;
    const std::string printer = chosenPrinter(options, mapped, printersOf(printers));
    std::string failure;
    printers.submit(printer, pdfFile, title, options.copies, [&failure](const std::string& error) {
        failure = error;
        QCoreApplication::exit(0);
    });
    QCoreApplication::exec();
    if (!failure.empty()) {
        throw std::runtime_error(failure);
    }
    std::printf("%s: sent to %s\n", title.c_str(), printer.c_str());
}

void serve(const report::Options& options) {
    report::ReportMaker maker(options.site);
    const auto made = maker.make(options);
    const std::atomic<bool> neverCancelled = false;
    const reports::PageSize paper =
        reports::paperNamed(options.paper).value_or(reports::usualPaper());
    if (!options.pdfFile.empty()) {
        reports::exportPdf(*made, paper, options.pdfFile, neverCancelled);
        return;
    }
    const std::string file = maker.folder().path() + "/report.pdf";
    reports::exportPdf(*made, paper, file, neverCancelled);
    print(options, maker.printer(), file, made->definition().title);
}

} // namespace

int main(int argc, char** argv) {
    int status = 0;
    const std::optional<report::Options> options = report::readOptions(argc, argv, status);
    if (!options) {
        return status;
    }
    // What the toolkit has to say about fonts is nothing for a script's log.
    QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false"));
    // Fonts are needed, a display is not.
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QGuiApplication application(argc, argv);
    try {
        serve(*options);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kintar-report: %s\n", error.what());
        return 1;
    }
}
