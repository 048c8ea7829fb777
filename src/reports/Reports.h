// The report subsystem: its window's place, and who serves print requests.
#pragma once

#include "reports/PrintJob.h"
#include "reports/ReportServices.h"
#include "reports/frmPrnRpt.h"
#include "server/Forms.h"
#include "server/PrintRequests.h"

#include <memory>

namespace kintar {

/// Holds the default instance of the report window at its place among the server's forms, for as
/// long as it lives.
class Reports final : public ReportPrinting {
public:
    explicit Reports(ReportServices services);
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;
    ~Reports() override;

    void print(const StoredPrintRequest& request, Progress progress, Ended ended) override;
    void cancel() override;

    [[nodiscard]] PublicClass publicClass();
    DefaultInstance<frmPrnRpt>& prnRpt() { return prnRpt_; }

private:
    ReportServices services_;
    DefaultInstance<frmPrnRpt> prnRpt_;
    std::unique_ptr<reports::PrintJob> job_;
};

} // namespace kintar
