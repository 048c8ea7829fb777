#include "reports/PdfWorker.h"

#include "reports/engine/qt/PdfExport.h"

#include <QThread>

#include <exception>
#include <utility>

namespace kintar::reports {

PdfWorker::~PdfWorker() {
    cancel();
}

void PdfWorker::cancel() {
    if (thread_) {
        *cancelled_ = true;
        thread_->disconnect(this);
        thread_->wait(); // not longer than a row or a page takes
        thread_.reset();
    }
}

void PdfWorker::run(std::function<void(const std::atomic<bool>&)> work,
                    std::function<void()> done) {
    cancel();
    cancelled_ = std::make_shared<std::atomic<bool>>(false);
    thread_.reset(
        QThread::create([work = std::move(work), cancelled = cancelled_] { work(*cancelled); }));
    connect(thread_.get(), &QThread::finished, this, [this, done = std::move(done)] {
        thread_->wait();
        // Gone before the answer, which may ask for the next piece of work.
        const std::unique_ptr<QThread> finished = std::exchange(thread_, nullptr);
        done();
    });
    thread_->start();
}

void PdfWorker::write(Read read, PageSize paper, const std::string& path, Written written) {
    auto error = std::make_shared<std::string>();
    run(
        [read = std::move(read), paper, path, error](const std::atomic<bool>& cancelled) {
            try {
                exportPdf(*read(cancelled), paper, path, cancelled);
            } catch (const std::exception& failure) {
                *error = failure.what();
            }
        },
        [written = std::move(written), error] { written(*error); });
}

void PdfWorker::layOut(Read read, PageSize paper, LaidOut laidOut) {
    struct Result {
        std::shared_ptr<LaidOutReport> pages;
        std::string error;
    };
    auto result = std::make_shared<Result>();
    run(
        [read = std::move(read), paper, result](const std::atomic<bool>& cancelled) {
            try {
                result->pages = std::make_shared<LaidOutReport>(read(cancelled), paper, cancelled);
            } catch (const std::exception& failure) {
                result->error = failure.what();
            }
        },
        [laidOut = std::move(laidOut), result] { laidOut(result->pages, result->error); });
}

} // namespace kintar::reports
