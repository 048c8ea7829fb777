// The report subsystem: its window's place, and who serves print requests.
#pragma once

#include "reports/PrintJob.h"
#include "reports/PrintRequest.h"
#include "reports/ReportServices.h"
#include "reports/frmPrnRpt.h"
#include "server/Forms.h"

#include <deque>
#include <memory>

namespace kintar {

/// Holds the default instance of the report window at its place among the server's forms, for as
/// long as it lives.
class ReportWindows final {
public:
    explicit ReportWindows(ReportServices services);
    ReportWindows(const ReportWindows&) = delete;
    ReportWindows& operator=(const ReportWindows&) = delete;
    ~ReportWindows();

    /// Begins to serve a request, or lets it wait for the one that is being served, and returns;
    /// windows and bus go on.
    void print(const StoredPrintRequest& request, PrintProgress progress, PrintEnded ended);

    [[nodiscard]] PublicClass publicClass();
    DefaultInstance<frmPrnRpt>& prnRpt() { return prnRpt_; }

private:
    struct Waiting {
        StoredPrintRequest request;
        PrintProgress progress;
        PrintEnded ended;
    };

    void serveNext();
    void begin();
    void end(const std::string& error);

    ReportServices services_;
    ReportTurns turns_;
    DefaultInstance<frmPrnRpt> prnRpt_;
    std::deque<Waiting> waiting_; ///< the first is being served
    std::unique_ptr<reports::PrintJob> job_;
    ReportTurns::Turn turn_;               ///< while a request is served
    std::shared_ptr<ReportWindows*> self_; ///< set to nothing when this goes
};

} // namespace kintar
