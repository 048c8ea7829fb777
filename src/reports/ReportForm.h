// What the print timer needs of the form that wraps the report engine.
#pragma once

#include "platform/Printers.h"

#include <cstdint>
#include <functional>
#include <string>

namespace kintar::reports {

/// The members of `frmPrnRpt` that printing calls. Each reports its own errors and then ends;
/// what a later member makes of that shows in its own outcome.
class ReportForm {
public:
    virtual ~ReportForm() = default;
    virtual void RptName(const std::string& path) = 0;
    virtual void SelPrinter(const std::string& deviceName) = 0;
    virtual void Copies(std::int16_t copies) = 0;
    /// The printers that SelPrinter finds names in, and PrintRpt its default.
    virtual void setPrinters(const platform::PrinterList& printers) = 0;
    /// Prints without prompting; `printed` is called from the event loop, with the error's text or
    /// an empty one.
    virtual void printRpt(std::function<void(const std::string& error)> printed) = 0;
};

} // namespace kintar::reports
