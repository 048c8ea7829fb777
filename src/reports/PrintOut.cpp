#include "reports/PrintOut.h"

#include "server/IgnoringErrors.h"

#include <utility>

namespace kintar::reports {

PrintOut::PrintOut(platform::Printers& printers, platform::Files& files, std::string file)
    : printers_(printers), files_(files), file_(std::move(file)),
      self_(std::make_shared<PrintOut*>(this)) {}

PrintOut::~PrintOut() {
    *self_ = nullptr;
    worker_.cancel();
    deleteFile();
}

void PrintOut::start(PdfWorker::Read read, const std::string& title, PageSize paper,
                     const std::string& printer, int copies, Done done) {
    done_ = std::move(done);
    worker_.write(std::move(read), paper, file_,
                  [this, title, printer, copies](const std::string& error) {
                      if (error.empty()) {
                          submit(title, printer, copies);
                      } else {
                          end(error);
                      }
                  });
}

void PrintOut::submit(const std::string& title, const std::string& printer, int copies) {
    printers_.submit(printer, file_, title, copies, [self = self_](const std::string& error) {
        if (PrintOut* printOut = *self) {
            printOut->end(error);
        }
    });
}

void PrintOut::end(const std::string& error) {
    deleteFile();
    const Done done = std::exchange(done_, nullptr);
    done(error); // this may be gone now
}

void PrintOut::deleteFile() {
    ignoringErrors([this] { files_.deleteIfExists(file_); });
}

} // namespace kintar::reports
