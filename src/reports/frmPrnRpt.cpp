#include "reports/frmPrnRpt.h"

#include "base/RunTimeError.h"
#include "reports/ReportView.h"
#include "reports/engine/qt/PdfExport.h"
#include "server/IgnoringErrors.h"

#include <QFileDialog>
#include <QPointer>
#include <QResizeEvent>

#include <algorithm>
#include <utility>

namespace kintar {
namespace {

constexpr std::size_t reportFileLimit = std::size_t{4} << 20U;
constexpr int viewWidth = 1000;
constexpr int viewHeight = 800;

} // namespace

frmPrnRpt::frmPrnRpt(const ReportServices& services)
    : FormWindow("frmPrnRpt"), services_(services) {
    setWindowTitle(QStringLiteral("Print Report"));
    crv_ = new reports::ReportView;
    crv_->setParent(this);
    crv_->setVisible(false);
    crv_->onPrint([this] { PrintRpt(); });
    crv_->onExport([this] { exportWhereTheOperatorSays(); });
}

frmPrnRpt::~frmPrnRpt() {
    dropPrintOuts(); // a form that was never shown has no unload
}

void frmPrnRpt::Load() {
    resize(viewWidth, viewHeight);
    crv_->move(0, 0);
}

void frmPrnRpt::Unload() {
    viewWorker_.cancel();
    exportWorker_.cancel();
    dropPrintOuts();
}

/// Whoever waits for a print-out hears that it will not come.
void frmPrnRpt::dropPrintOuts() {
    for (const Running& each : std::exchange(running_, {})) {
        services_.loop.later(
            [printed = each.printed] { printed("The report was closed before it was printed."); });
    }
}

void frmPrnRpt::resizeEvent(QResizeEvent* event) {
    crv_->resize(event->size());
}

template <class Work>
std::string frmPrnRpt::reporting(const char* routine, const Work& work) {
    try {
        work();
        return {};
    } catch (const std::exception& error) {
        services_.globals.reportError(error, routine);
        crv_->showStatus(error.what());
        return error.what();
    }
}

reports::OpenReport& frmPrnRpt::current() {
    if (!report_) {
        throw RunTimeError::objectNotSet();
    }
    return *report_;
}

std::shared_ptr<const reports::Report> frmPrnRpt::runReport() {
    const reports::OpenReport& open = current();
    return open.run({services_.globals.tarnRec(), services_.globals.gCnn2(), services_.databases},
                    services_.clock.now(), services_.formats);
}

reports::PdfWorker::Read frmPrnRpt::reader() {
    const reports::OpenReport& open = current();
    std::shared_ptr<ReadSession> session;
    if (services_.globals.gSys) {
        // The list of who is in has its own database and comes out also where the site's is gone.
        ignoringErrors([&] { session = services_.globals.gSys->newReadSession(); });
    }
    if (!session) {
        return [report = runReport()](const std::atomic<bool>&) { return report; };
    }
    TarnRec& record = services_.globals.tarnRec();
    return [open, session, &record, &databases = services_.databases, made = services_.clock.now(),
            formats = services_.formats](const std::atomic<bool>& cancelled) {
        session->stopWhen(&cancelled);
        return open.run({record, session->connection(), databases}, made, formats);
    };
}

void frmPrnRpt::RptName(const std::string& path) {
    reporting("frmPrnRpt/RptName", [&] {
        // What was open before is not printed in place of what cannot be opened.
        report_.reset();
        crv_->showReport(nullptr);
        const auto text = services_.files.read(path, reportFileLimit);
        if (!text) {
            throw RunTimeError(53, "File not found: " + path);
        }
        report_.emplace(*text, path);
        setWindowTitle(QStringLiteral("Print Report"));
    });
}

void frmPrnRpt::PreView() {
    reporting("frmPrnRpt/PreView", [this] {
        auto read = reader();
        crv_->setVisible(true);
        crv_->showStatus("Reading and laying out the report");
        Show();
        viewWorker_.layOut(std::move(read), reports::usualPaper(),
                           [this](const std::shared_ptr<reports::LaidOutReport>& pages,
                                  const std::string& error) { showLaidOut(pages, error); });
    });
}

void frmPrnRpt::showLaidOut(const std::shared_ptr<reports::LaidOutReport>& pages,
                            const std::string& error) {
    reporting("frmPrnRpt/PreView", [&] {
        crv_->showReport(pages);
        crv_->showStatus("");
        if (!error.empty()) {
            throw RunTimeError(1004, error);
        }
    });
}

void frmPrnRpt::PrintRpt() {
    printRpt([form = QPointer<frmPrnRpt>(this)](const std::string& error) {
        if (form != nullptr) {
            form->crv_->showStatus(error.empty() ? "Sent to the printer." : error);
        }
    });
}

void frmPrnRpt::printRpt(std::function<void(const std::string& error)> printed) {
    const std::string failure = reporting("frmPrnRpt/PrintRpt", [&] { startPrintOut(printed); });
    if (!failure.empty()) {
        services_.loop.later([printed, failure] { printed(failure); });
    }
}

void frmPrnRpt::startPrintOut(std::function<void(const std::string&)> printed) {
    if (services_.globals.gTempPath.empty()) {
        throw RunTimeError(76, "Path not found: there is no temporary folder");
    }
    auto read = reader();
    const std::string file =
        services_.globals.gTempPath + "/Print" + std::to_string(++files_) + ".pdf";
    auto printOut = std::make_unique<reports::PrintOut>(services_.printers, services_.files, file);
    reports::PrintOut* started = printOut.get();
    running_.push_back({std::move(printOut), std::move(printed)});
    started->start(std::move(read), current().definition().title, reports::usualPaper(),
                   chosenPrinter(), copies_,
                   [this, started](const std::string& error) { endPrintOut(started, error); });
}

void frmPrnRpt::endPrintOut(const reports::PrintOut* printOut, const std::string& error) {
    const auto found = std::ranges::find_if(
        running_, [printOut](const Running& known) { return known.printOut.get() == printOut; });
    const Running ended = std::move(*found);
    running_.erase(found);
    ended.printed(reporting("frmPrnRpt/PrintRpt", [&error] {
        if (!error.empty()) {
            throw RunTimeError(482, error);
        }
    }));
}

/// The printer selected, else the system's own, else any.
std::string frmPrnRpt::chosenPrinter() {
    if (current().printer()) {
        return current().printer()->deviceName;
    }
    if (!printers_.defaultDevice.empty() || printers_.printers.empty()) {
        return printers_.defaultDevice;
    }
    return printers_.printers.front().deviceName;
}

void frmPrnRpt::Export(const std::string& fileName) {
    reporting("frmPrnRpt/Export", [&] {
        const reports::OpenReport& open = current();
        static_cast<void>(open);
        services_.files.deleteIfExists(fileName);
        const std::atomic<bool> neverCancelled = false;
        reports::exportPdf(*runReport(), reports::usualPaper(), fileName, neverCancelled);
    });
}

void frmPrnRpt::exportWhereTheOperatorSays() {
    auto* dialog = new QFileDialog(this, QStringLiteral("Export As PDF"), QString(),
                                   QStringLiteral("PDF (*.pdf)"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("pdf"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& file) { exportAside(file.toStdString()); });
    dialog->open();
}

/// As Export, without keeping the windows waiting: the operator watches.
void frmPrnRpt::exportAside(const std::string& fileName) {
    reporting("frmPrnRpt/Export", [&] {
        auto read = reader();
        services_.files.deleteIfExists(fileName);
        crv_->showStatus("Exporting");
        exportWorker_.write(std::move(read), reports::usualPaper(), fileName,
                            [this](const std::string& error) {
                                reporting("frmPrnRpt/Export", [&] {
                                    if (!error.empty()) {
                                        throw RunTimeError(75, error);
                                    }
                                    crv_->showStatus("Exported.");
                                });
                            });
    });
}

void frmPrnRpt::Formula(const std::string& name, const std::string& text) {
    reporting("frmPrnRpt/Formula", [&] { current().setFormula(name, text); });
}

void frmPrnRpt::SelectionFormula(const std::string& text) {
    current().setSelection(text);
}

void frmPrnRpt::SectionFormat(const std::string& section, bool suppress) {
    reporting("frmPrnRpt/SectionFormat", [&] { current().setSuppressed(section, suppress); });
}

void frmPrnRpt::GroupCondition(std::int16_t group, const std::string& field,
                               std::int16_t condition) {
    current().setGroupCondition(group, field, condition);
}

void frmPrnRpt::SortField(std::int16_t number, const std::string& field, bool descending) {
    current().setSortField(number, field, descending);
}

void frmPrnRpt::SelPrinter(const std::string& deviceName) {
    reporting("frmPrnRpt/SelPrinter", [&] {
        reports::OpenReport& open = current();
        const auto found =
            std::ranges::find(printers_.printers, deviceName, &platform::Printer::deviceName);
        if (found != printers_.printers.end()) {
            open.selectPrinter(*found);
        }
    });
}

void frmPrnRpt::SubReportSelectionFormula(const std::string& subReport, const std::string& text) {
    current().setSubReportSelection(subReport, text);
}

} // namespace kintar
