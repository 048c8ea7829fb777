// One report on its way to a printer.
#pragma once

#include "platform/Platform.h"
#include "platform/Printers.h"
#include "reports/PdfWorker.h"

#include <functional>
#include <memory>
#include <string>

namespace kintar::reports {

/// Written to a file of its own, handed to the print system, and done. Destroyed before its end it
/// leaves no file, and `done` is not called.
class PrintOut {
public:
    /// Called once, from the event loop, with the error's text or an empty one.
    using Done = std::function<void(const std::string& error)>;

    PrintOut(platform::Printers& printers, platform::Files& files, std::string file);
    PrintOut(const PrintOut&) = delete;
    PrintOut& operator=(const PrintOut&) = delete;
    ~PrintOut();

    void start(PdfWorker::Read read, const std::string& title, PageSize paper,
               const std::string& printer, int copies, Done done);

private:
    void submit(const std::string& title, const std::string& printer, int copies);
    void end(const std::string& error);
    void deleteFile();

    platform::Printers& printers_;
    platform::Files& files_;
    std::string file_;
    Done done_;
    PdfWorker worker_;
    /// Set to nothing when this goes: an answer that comes later sees that.
    std::shared_ptr<PrintOut*> self_;
};

} // namespace kintar::reports
