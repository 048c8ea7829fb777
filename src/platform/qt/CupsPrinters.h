// The printers of CUPS.
#pragma once

#include "platform/Printers.h"

#include <QObject>
#include <QProcess>

#include <chrono>

class QTimer;

namespace kintar::platform {

/// Asks the print system through its own programs, `lpstat` and `lp`: whatever state it is in, a
/// program can be waited for without blocking, and ended. The last good list of printers stands in
/// where an answer takes too long.
class CupsPrinters final : public QObject, public Printers {
    Q_OBJECT

public:
    explicit CupsPrinters(std::chrono::milliseconds patience = std::chrono::seconds(10));
    CupsPrinters(const CupsPrinters&) = delete;
    CupsPrinters& operator=(const CupsPrinters&) = delete;
    ~CupsPrinters() override;

    void list(Listed listed) override;
    void submit(const std::string& deviceName, const std::string& pdfFile, const std::string& title,
                int copies, Submitted submitted) override;
    void cancel() override;

private:
    struct Outcome {
        bool good = false;
        bool late = false;
        std::string output;
        std::string error;
    };
    using Finished = std::function<void(const Outcome&)>;

    void run(const char* program, const QStringList& arguments, const Finished& finished);

    std::chrono::milliseconds patience_;
    PrinterList lastGood_;
};

} // namespace kintar::platform
