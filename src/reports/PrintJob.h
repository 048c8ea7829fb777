// The order of steps in which a print request is served.
#pragma once

#include "platform/Platform.h"
#include "platform/Printers.h"
#include "reports/PrintRequest.h"
#include "reports/ReportForm.h"
#include "reports/objInRpt.h"
#include "server/modGlobals.h"

#include <functional>
#include <memory>
#include <string>

namespace kintar::reports {

struct PrintWorld {
    modGlobals& globals;
    platform::Files& files;
    platform::Printers& printers;
    platform::EventLoop& loop;
    /// The default instance of the form, made where there is none.
    std::function<ReportForm&()> form;
    /// A fresh who-is-in builder.
    std::function<std::unique_ptr<objInRpt>()> makeInRpt;
};

/// Serves one request, a step at each turn of the event loop. Destroyed before its end it drops the
/// rest, and `ended` is not called.
class PrintJob {
public:
    PrintJob(PrintWorld world, StoredPrintRequest request, PrintProgress progress,
             PrintEnded ended);
    PrintJob(const PrintJob&) = delete;
    PrintJob& operator=(const PrintJob&) = delete;
    ~PrintJob();

    void start();

private:
    using Step = void (PrintJob::*)();

    void next(Step step);
    /// Runs `work` unless this job is gone by then; its errors end the job.
    std::function<void()> guarded(std::function<void()> work);
    void end(const std::string& error);
    void takePrinters(const platform::PrinterList& printers);
    void chooseReport();
    void buildSome();
    void openCopy();
    void printOut();
    [[nodiscard]] std::string reportFile(std::string_view name) const;
    [[nodiscard]] std::string wantedPrinter() const;

    PrintWorld world_;
    StoredPrintRequest request_;
    PrintProgress progress_;
    PrintEnded ended_;
    platform::PrinterList printers_;
    std::unique_ptr<objInRpt> inRpt_;
    /// Set to nothing when the job goes: what comes later sees that.
    std::shared_ptr<PrintJob*> self_;
};

} // namespace kintar::reports
