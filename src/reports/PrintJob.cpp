#include "reports/PrintJob.h"

#include "base/RunTimeError.h"

#include <algorithm>

namespace kintar::reports {
namespace {

constexpr std::size_t reportFileLimit = std::size_t{4} << 20U;
constexpr std::string_view timerRoutine = "frmNameSearch/Timer1_Timer";

std::string grouped(std::size_t number) {
    std::string text = std::to_string(number);
    for (std::ptrdiff_t at = static_cast<std::ptrdiff_t>(text.size()) - 3; at > 0; at -= 3) {
        text.insert(static_cast<std::size_t>(at), 1, ',');
    }
    return text;
}

} // namespace

PrintJob::PrintJob(PrintWorld world, StoredPrintRequest request, PrintProgress progress,
                   PrintEnded ended)
    : world_(std::move(world)), request_(request), progress_(std::move(progress)),
      ended_(std::move(ended)), self_(std::make_shared<PrintJob*>(this)) {}

PrintJob::~PrintJob() {
    *self_ = nullptr;
}

void PrintJob::start() {
    world_.printers.list([self = self_](const platform::PrinterList& printers) {
        if (PrintJob* job = *self) {
            job->guarded([job, &printers] { job->takePrinters(printers); })();
        }
    });
}

std::function<void()> PrintJob::guarded(std::function<void()> work) {
    return [self = self_, work = std::move(work)] {
        if (*self == nullptr) {
            return;
        }
        try {
            work();
        } catch (const std::exception& error) {
            if (PrintJob* job = *self) {
                job->world_.globals.reportError(error, timerRoutine);
                job->end(error.what());
            }
        }
    };
}

void PrintJob::next(Step step) {
    world_.loop.later(guarded([this, step] { (this->*step)(); }));
}

void PrintJob::end(const std::string& error) {
    const PrintEnded ended = ended_;
    *self_ = nullptr;
    ended(error); // the job may be gone now
}

void PrintJob::takePrinters(const platform::PrinterList& printers) {
    if (printers.printers.empty()) {
        end("There is no printer.");
        return;
    }
    printers_ = printers;
    next(&PrintJob::chooseReport);
}

void PrintJob::chooseReport() {
    if (request_.request == PrintRequest::WhoIsIn) {
        inRpt_ = world_.makeInRpt();
        inRpt_->begin(request_.loc);
        next(&PrintJob::buildSome);
        return;
    }
    world_.form().RptName(reportFile("Except.rpt"));
    next(&PrintJob::printOut);
}

void PrintJob::buildSome() {
    const bool more = inRpt_->step();
    const InRptBuild* build = inRpt_->build();
    if (more) {
        if (build->cardsInAll() > 0) {
            progress_("Who is in: " + grouped(build->cardsDone()) + " of " +
                      grouped(build->cardsInAll()) + " cards");
        }
        next(&PrintJob::buildSome);
        return;
    }
    if (build == nullptr || !build->succeeded()) {
        // Reported by the builder itself; nothing is printed, least of all an old list.
        end("The who-is-in list could not be made" +
            (build == nullptr ? std::string(".") : ": " + build->error()));
        return;
    }
    next(&PrintJob::openCopy);
}

void PrintJob::openCopy() {
    const std::string original = reportFile("InRptc.rpt");
    const std::string copy = platform::rulePath(world_.globals.gTempPath, R"(\InRptc.rpt)");
    world_.files.deleteIfExists(copy);
    const auto text = world_.files.read(original, reportFileLimit);
    if (!text) {
        throw RunTimeError(53, "File not found: " + original);
    }
    if (!world_.files.createWhole(copy, *text)) {
        throw RunTimeError(58, "File already exists: " + copy);
    }
    world_.form().RptName(copy);
    printOut();
}

void PrintJob::printOut() {
    ReportForm& form = world_.form();
    form.setPrinters(printers_);
    const std::string wanted = wantedPrinter();
    const auto matches = [&wanted](const platform::Printer& printer) {
        return printer.deviceName == wanted;
    };
    if (std::ranges::any_of(printers_.printers, matches)) {
        form.SelPrinter(wanted);
    }
    form.Copies(1);
    progress_("Printing");
    form.printRpt([self = self_](const std::string& error) {
        if (PrintJob* job = *self) {
            job->end(error);
        }
    });
}

std::string PrintJob::wantedPrinter() const {
    return inRpt_ ? inRpt_->Printer() : std::string();
}

std::string PrintJob::reportFile(std::string_view name) const {
    return platform::rulePath(world_.globals.gSysPath, R"(\Reports\)") + std::string(name);
}

} // namespace kintar::reports
