#include "reports/ReportWindows.h"

#include <utility>

namespace kintar {

ReportWindows::ReportWindows(ReportServices services)
    : services_(std::move(services)), turns_(services_.loop), prnRpt_([this] {
          auto form = platform::FormWindow::make<frmPrnRpt>(services_);
          form->onClose([this] { prnRpt_.unload(); });
          return form;
      }),
      self_(std::make_shared<ReportWindows*>(this)) {
    services_.globals.forms.place(FormId::frmPrnRpt, prnRpt_);
}

ReportWindows::~ReportWindows() {
    *self_ = nullptr;
    job_.reset();
    services_.printers.cancel();
    prnRpt_.unload();
    services_.globals.forms.remove(FormId::frmPrnRpt);
}

void ReportWindows::print(const StoredPrintRequest& request, PrintProgress progress,
                          PrintEnded ended) {
    waiting_.push_back({request, std::move(progress), std::move(ended)});
    if (waiting_.size() == 1) {
        serveNext();
    }
}

void ReportWindows::serveNext() {
    turns_.take([self = self_](ReportTurns::Turn turn) {
        if (ReportWindows* windows = *self) {
            windows->turn_ = std::move(turn);
            windows->begin();
        }
    });
}

void ReportWindows::begin() {
    const Waiting& served = waiting_.front();
    job_ = std::make_unique<reports::PrintJob>(
        reports::PrintWorld{services_.globals, services_.files, services_.printers, services_.loop,
                            [this]() -> reports::ReportForm& { return prnRpt_.get(); },
                            [this] {
                                return std::make_unique<objInRpt>(
                                    services_.globals, services_.databases, services_.files,
                                    services_.clock, services_.loop, turns_);
                            }},
        served.request, served.progress, [this](const std::string& error) { end(error); });
    job_->start();
}

void ReportWindows::end(const std::string& error) {
    const Waiting done = std::move(waiting_.front());
    waiting_.pop_front();
    turn_.reset();
    if (!waiting_.empty()) {
        serveNext();
    }
    done.ended(error);
}

PublicClass ReportWindows::publicClass() {
    return objInRpt::describe(services_.globals, services_.databases, services_.files,
                              services_.clock, services_.loop, turns_);
}

} // namespace kintar
