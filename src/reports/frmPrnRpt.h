// The form that wraps the report engine and its viewer.
#pragma once

#include "platform/qt/FormWindow.h"
#include "reports/PdfWorker.h"
#include "reports/PrintOut.h"
#include "reports/ReportForm.h"
#include "reports/ReportServices.h"
#include "reports/engine/OpenReport.h"

#include <optional>
#include <vector>

namespace kintar {

namespace reports {
class ReportView;
} // namespace reports

/// Callers name the report file first (`RptName`), then set what they will, then ask for a preview,
/// a print-out or an export. Only a preview shows the form.
///
/// `PreView`, `PrintRpt`, `Export`, `RptName`, `Formula`, `SectionFormat` and `SelPrinter` report
/// their errors and end; the other members raise them.
class frmPrnRpt final : public platform::FormWindow, public reports::ReportForm {
public:
    explicit frmPrnRpt(const ReportServices& services);
    ~frmPrnRpt() override;

    void PreView();
    void PrintRpt();
    /// Writes the report as PDF (the engine's format 35 on its destination 1, a file), in place of
    /// an existing file of that name.
    void Export(const std::string& fileName);
    void RptName(const std::string& path) override;
    void Formula(const std::string& name, const std::string& text);
    void SelectionFormula(const std::string& text);
    /// Sets whether a section is suppressed.
    void SectionFormat(const std::string& section, bool suppress);
    void GroupCondition(std::int16_t group, const std::string& field, std::int16_t condition);
    void SortField(std::int16_t number, const std::string& field, bool descending);
    /// A name that no printer has leaves the printer as it was.
    void SelPrinter(const std::string& deviceName) override;
    void SubReportSelectionFormula(const std::string& subReport, const std::string& text);
    void Copies(std::int16_t copies) override { copies_ = copies; }

    void setPrinters(const platform::PrinterList& printers) override { printers_ = printers; }
    void printRpt(std::function<void(const std::string& error)> printed) override;

protected:
    void Load() override;
    void Unload() override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// The current report. Raises 91 before `RptName`.
    reports::OpenReport& current();
    [[nodiscard]] std::shared_ptr<const reports::Report> runReport();
    /// What reads the current report as it is now: on another thread where the companion has
    /// connections for that, otherwise it has read it already.
    [[nodiscard]] reports::PdfWorker::Read reader();
    template <class Work>
    std::string reporting(const char* routine, const Work& work);
    void dropPrintOuts();
    void startPrintOut(std::function<void(const std::string&)> printed);
    void endPrintOut(const reports::PrintOut* printOut, const std::string& error);
    [[nodiscard]] std::string chosenPrinter();
    void showLaidOut(const std::shared_ptr<reports::LaidOutReport>& pages,
                     const std::string& error);
    void exportWhereTheOperatorSays();
    void exportAside(const std::string& fileName);

    ReportServices services_;
    std::optional<reports::OpenReport> report_;
    platform::PrinterList printers_;
    std::int16_t copies_ = 1;
    int files_ = 0;
    struct Running {
        std::unique_ptr<reports::PrintOut> printOut;
        std::function<void(const std::string&)> printed;
    };
    std::vector<Running> running_;
    reports::PdfWorker viewWorker_;
    reports::PdfWorker exportWorker_;
    reports::ReportView* crv_ = nullptr;
};

} // namespace kintar
