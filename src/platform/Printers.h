// The printers of the system, asked for without ever blocking.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kintar::platform {

struct Printer {
    std::string deviceName;
    std::string driverName;
    std::string port;
    bool operator==(const Printer&) const = default;
};

/// The answer of the print system: its printers, and which of them is the default.
struct PrinterList {
    std::vector<Printer> printers;
    std::string defaultDevice; ///< empty where the system names none
    bool operator==(const PrinterList&) const = default;
};

/// The print system. Answers come on the calling thread, from its event loop, never inside the call
/// itself; a print system that does not answer in time counts as one without printers, or fails the
/// job. After `cancel` nothing asked before is answered.
class Printers {
public:
    using Listed = std::function<void(const PrinterList&)>;
    /// The error's text; empty where the print system took the job.
    using Submitted = std::function<void(const std::string& error)>;

    virtual ~Printers() = default;
    virtual void list(Listed listed) = 0;
    /// Hands a PDF file to a printer. The file may go once `submitted` is called.
    virtual void submit(const std::string& deviceName, const std::string& pdfFile,
                        const std::string& title, int copies, Submitted submitted) = 0;
    virtual void cancel() = 0;
};

/// The event loop, as a queue of work for its next turns.
class EventLoop {
public:
    virtual ~EventLoop() = default;
    /// Runs `work` on this thread in a later turn of the loop, after input and painting.
    virtual void later(std::function<void()> work) = 0;
};

} // namespace kintar::platform
