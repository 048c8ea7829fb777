// Photos decoded by other processes, so that no file stops the windows.
#pragma once

#include "platform/qt/PhotoLoader.h"
#include "platform/qt/PhotoWorker.h"

#include <QDeadlineTimer>
#include <QTimer>

#include <list>
#include <memory>
#include <string>
#include <vector>

namespace kintar::platform {

/// The worker program that belongs to this installation: beside the server's executable, or where
/// packages put helper programs.
std::string photoWorkerProgram();

/// Keeps two workers running, so that no event waits for the start of a process; they are started a
/// moment after the program, or by the first photo that is asked for. A photo that is not there 2
/// seconds after it was asked for is given up and its worker killed; so is one that crashes its
/// worker. A worker that cannot be killed (a share that hangs) is left alone and replaced.
class PhotoWorkerPool final : public PhotoLoader {
public:
    struct Limits {
        std::chrono::milliseconds photo{2000};
        /// How long a worker may go on with a photo that nobody wants any more.
        std::chrono::milliseconds unwanted{250};
        std::size_t workers = 2;
    };

    PhotoWorkerPool(std::string program, Limits limits);
    explicit PhotoWorkerPool(std::string program) : PhotoWorkerPool(std::move(program), Limits()) {}
    PhotoWorkerPool(const PhotoWorkerPool&) = delete;
    PhotoWorkerPool& operator=(const PhotoWorkerPool&) = delete;
    ~PhotoWorkerPool() override;

    std::uint32_t load(const PhotoRequest& request, Done done) override;
    void cancel(std::uint32_t number) override;

    /// The processes that wait or work, for tests and reports.
    [[nodiscard]] std::vector<pid_t> processes() const;
    /// Whether every worker waits for a photo, everything loaded.
    [[nodiscard]] bool isWarm() const;

private:
    struct Job {
        PhotoQuestion question;
        Done done; ///< empty: not wanted any more
        QDeadlineTimer deadline;
        PhotoWorker* worker = nullptr; ///< null: waits for one
        int deaths = 0;                ///< of workers that had it
    };
    using Jobs = std::list<Job>;

    void startWorkers();
    void startWorker();
    void giveUpWhatNobodyCanDo();
    void retire(PhotoWorker* worker);
    void reap();
    void dispatch();
    PhotoWorker* idleWorker();
    Jobs::iterator jobOf(const PhotoWorker* worker);
    void workerAnswered(PhotoWorker* worker, const QImage& photo);
    void workerFailed(PhotoWorker* worker);
    void finish(Jobs::iterator job, const QImage& photo);
    void armDeadline();
    void giveUpLateJobs();

    std::string program_;
    Limits limits_;
    std::vector<std::unique_ptr<PhotoWorker>> workers_;
    std::vector<std::unique_ptr<PhotoWorker>> retired_; ///< killed, not destroyed yet
    std::vector<pid_t> dying_;                          ///< killed, not ended yet
    Jobs jobs_;
    std::uint32_t lastNumber_ = 0;
    int failuresInARow_ = 0;
    bool startFailureTold_ = false;
    QTimer deadline_;
    QTimer restart_;
    QTimer bury_;
};

} // namespace kintar::platform
