// Reads, lays out and writes reports without keeping the windows waiting.
#pragma once

#include "reports/engine/Pagination.h"
#include "reports/engine/qt/QtTextMeasure.h"

#include <QObject>
#include <QThread>

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace kintar::reports {

/// A report in pages, with all that it stands on.
struct LaidOutReport {
    LaidOutReport(std::shared_ptr<const Report> r, PageSize paper,
                  const std::atomic<bool>& cancelled)
        : report(std::move(r)), measure(report->definition()),
          pages(*report, measure, paper, cancelled) {}

    std::shared_ptr<const Report> report;
    QtTextMeasure measure;
    PagedReport pages;
};

/// One piece of work at a time, on a thread of its own; the answer comes from the event loop. A new
/// piece, or the end of the worker, drops the one before it.
class PdfWorker final : public QObject {
public:
    /// Reads the rows of a report; called on the worker's thread. What it holds lives until then.
    using Read = std::function<std::shared_ptr<const Report>(const std::atomic<bool>& cancelled)>;
    using Written = std::function<void(const std::string& error)>;
    using LaidOut = std::function<void(std::shared_ptr<LaidOutReport>, const std::string& error)>;

    PdfWorker() = default;
    PdfWorker(const PdfWorker&) = delete;
    PdfWorker& operator=(const PdfWorker&) = delete;
    ~PdfWorker() override;

    /// Writes the report as a PDF file, whole or not at all.
    void write(Read read, PageSize paper, const std::string& path, Written written);
    void layOut(Read read, PageSize paper, LaidOut laidOut);
    void cancel();

private:
    void run(std::function<void(const std::atomic<bool>&)> work, std::function<void()> done);

    std::unique_ptr<QThread> thread_;
    std::shared_ptr<std::atomic<bool>> cancelled_;
};

} // namespace kintar::reports
