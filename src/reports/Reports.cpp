#include "reports/Reports.h"

#include <utility>

namespace kintar {

Reports::Reports(ReportServices services)
    : services_(std::move(services)), prnRpt_([this] {
          auto form = platform::FormWindow::make<frmPrnRpt>(services_);
          form->onClose([this] { prnRpt_.unload(); });
          return form;
      }) {
    services_.globals.forms.place(FormId::frmPrnRpt, prnRpt_);
}

Reports::~Reports() {
    cancel();
    prnRpt_.unload();
    services_.globals.forms.remove(FormId::frmPrnRpt);
}

void Reports::print(const StoredPrintRequest& request, Progress progress, Ended ended) {
    job_ = std::make_unique<reports::PrintJob>(
        reports::PrintWorld{services_.globals, services_.files, services_.printers, services_.loop,
                            [this]() -> reports::ReportForm& { return prnRpt_.get(); },
                            [this] {
                                return std::make_unique<objInRpt>(
                                    services_.globals, services_.databases, services_.files,
                                    services_.clock, services_.application);
                            }},
        request, std::move(progress), std::move(ended));
    job_->start();
}

void Reports::cancel() {
    job_.reset();
    services_.printers.cancel();
}

PublicClass Reports::publicClass() {
    return objInRpt::describe(services_.globals, services_.databases, services_.files,
                              services_.clock, services_.application);
}

} // namespace kintar
