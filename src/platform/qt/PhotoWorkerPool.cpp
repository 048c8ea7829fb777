#include "platform/qt/PhotoWorkerPool.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <sys/wait.h>

#include <algorithm>
#include <iostream>
#include <system_error>
#include <utility>

namespace kintar::platform {

namespace {

/// Workers that were killed and have not ended, before no more are started.
constexpr std::size_t mostDying = 16;
/// Workers that die with one photo; all that waited may have been killed from outside at once.
constexpr int mostDeaths = 3;
/// Workers that end without an answer, one after another, before the next waits a moment.
constexpr int failuresBeforePause = 4;
constexpr std::chrono::milliseconds pauseBeforeRestart{1000};
/// Workers take a processor each while they start, and the server needs it for its first answer.
constexpr std::chrono::milliseconds startOfProgram{100};

} // namespace

std::string photoWorkerProgram() {
    const QString folder = QCoreApplication::applicationDirPath();
    for (const char* place :
         {"/kintar3-photo", "/../libexec/kintar3/kintar3-photo", "/../lib/kintar3/kintar3-photo"}) {
        const QFileInfo program(folder + QLatin1String(place));
        if (program.isExecutable()) {
            return program.absoluteFilePath().toStdString();
        }
    }
    return (folder + QLatin1String("/kintar3-photo")).toStdString();
}

PhotoWorkerPool::PhotoWorkerPool(std::string program, Limits limits)
    : program_(std::move(program)), limits_(limits) {
    deadline_.setSingleShot(true);
    deadline_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&deadline_, &QTimer::timeout, &deadline_, [this] { giveUpLateJobs(); });
    restart_.setSingleShot(true);
    QObject::connect(&restart_, &QTimer::timeout, &restart_, [this] {
        startWorkers();
        dispatch();
    });
    bury_.setSingleShot(true);
    QObject::connect(&bury_, &QTimer::timeout, &bury_, [this] { retired_.clear(); });
    QTimer::singleShot(startOfProgram, &restart_, [this] { startWorkers(); });
}

PhotoWorkerPool::~PhotoWorkerPool() {
    for (const auto& worker : workers_) {
        dying_.push_back(worker->process());
    }
    workers_.clear();
    reap();
}

std::uint32_t PhotoWorkerPool::load(const PhotoRequest& request, Done done) {
    lastNumber_ = lastNumber_ + 1 == 0 ? 1 : lastNumber_ + 1;
    PhotoQuestion question{lastNumber_, request.width, request.height, request.folder,
                           request.fileName};
    if (!encodeQuestion(question)) {
        question.fileName.clear(); // longer than any path: no such file
        question.folder.clear();
    }
    jobs_.push_back({std::move(question), std::move(done),
                     QDeadlineTimer(limits_.photo, Qt::PreciseTimer), nullptr, 0});
    const std::uint32_t number = lastNumber_;
    startWorkers();
    if (startFailureTold_) {
        giveUpWhatNobodyCanDo();
    }
    dispatch();
    armDeadline();
    return number;
}

void PhotoWorkerPool::cancel(std::uint32_t number) {
    const auto job = std::find_if(jobs_.begin(), jobs_.end(), [&](const Job& candidate) {
        return candidate.question.number == number;
    });
    if (job == jobs_.end()) {
        return;
    }
    if (job->worker == nullptr) {
        jobs_.erase(job);
    } else {
        job->done = nullptr;
        const QDeadlineTimer unwanted(limits_.unwanted, Qt::PreciseTimer);
        job->deadline = std::min(job->deadline, unwanted);
    }
    armDeadline();
}

std::vector<pid_t> PhotoWorkerPool::processes() const {
    std::vector<pid_t> found;
    for (const auto& worker : workers_) {
        found.push_back(worker->process());
    }
    return found;
}

bool PhotoWorkerPool::isWarm() const {
    return workers_.size() == limits_.workers &&
           std::all_of(workers_.begin(), workers_.end(),
                       [](const auto& worker) { return worker->isReady() && !worker->isBusy(); });
}

void PhotoWorkerPool::startWorkers() {
    reap();
    while (workers_.size() < limits_.workers && dying_.size() < mostDying && !restart_.isActive()) {
        try {
            startWorker();
            startFailureTold_ = false;
        } catch (const std::system_error& error) {
            if (!std::exchange(startFailureTold_, true)) {
                std::clog << "kintar3: photos cannot be shown: " << error.what() << std::endl;
            }
            restart_.start(pauseBeforeRestart);
            giveUpWhatNobodyCanDo();
        }
    }
}

void PhotoWorkerPool::giveUpWhatNobodyCanDo() {
    if (workers_.empty()) {
        for (Job& job : jobs_) {
            job.deadline = QDeadlineTimer(0, Qt::PreciseTimer);
        }
        armDeadline();
    }
}

void PhotoWorkerPool::startWorker() {
    // The worker's place is made first: its handlers know it by its address.
    const auto self = std::make_shared<PhotoWorker*>(nullptr);
    auto worker = std::make_unique<PhotoWorker>(
        program_,
        PhotoWorker::Handlers{[this, self](const QImage& photo) { workerAnswered(*self, photo); },
                              [this, self] { workerFailed(*self); }});
    *self = worker.get();
    workers_.push_back(std::move(worker));
}

void PhotoWorkerPool::retire(PhotoWorker* worker) {
    const auto place = std::find_if(workers_.begin(), workers_.end(),
                                    [&](const auto& held) { return held.get() == worker; });
    dying_.push_back(worker->process());
    worker->kill();
    // It may be its own handler that asks for this: it is destroyed after that has returned.
    retired_.push_back(std::move(*place));
    workers_.erase(place);
    bury_.start(0);
}

void PhotoWorkerPool::reap() {
    std::erase_if(dying_, [](pid_t process) {
        const pid_t ended = ::waitpid(process, nullptr, WNOHANG);
        return ended == process || (ended < 0 && errno == ECHILD);
    });
}

PhotoWorker* PhotoWorkerPool::idleWorker() {
    PhotoWorker* starting = nullptr;
    for (const auto& worker : workers_) {
        if (!worker->isBusy() && worker->isReady()) {
            return worker.get();
        }
        if (!worker->isBusy()) {
            starting = worker.get();
        }
    }
    return starting;
}

void PhotoWorkerPool::dispatch() {
    for (Job& job : jobs_) {
        if (job.worker != nullptr) {
            continue;
        }
        PhotoWorker* worker = idleWorker();
        if (worker == nullptr) {
            return;
        }
        // A worker that cannot be asked has died; its end is noticed from the event loop.
        worker->ask(job.question);
        job.worker = worker;
    }
}

PhotoWorkerPool::Jobs::iterator PhotoWorkerPool::jobOf(const PhotoWorker* worker) {
    return std::find_if(jobs_.begin(), jobs_.end(),
                        [&](const Job& job) { return job.worker == worker; });
}

void PhotoWorkerPool::workerAnswered(PhotoWorker* worker, const QImage& photo) {
    failuresInARow_ = 0;
    const auto job = jobOf(worker);
    dispatch();
    finish(job, photo);
}

void PhotoWorkerPool::workerFailed(PhotoWorker* worker) {
    const auto job = jobOf(worker);
    retire(worker);
    if (job == jobs_.end() && ++failuresInARow_ >= failuresBeforePause) {
        restart_.start(pauseBeforeRestart); // it is not a photo that ends them
    }
    startWorkers();
    const bool over = job != jobs_.end() && (++job->deaths == mostDeaths || !job->done);
    if (job != jobs_.end() && !over) {
        // It may have been killed from outside, or have died before it got to the photo.
        job->worker = nullptr;
    }
    dispatch();
    armDeadline();
    if (over) {
        finish(job, {});
    }
}

void PhotoWorkerPool::finish(Jobs::iterator job, const QImage& photo) {
    const std::uint32_t number = job->question.number;
    const Done done = std::move(job->done);
    jobs_.erase(job);
    armDeadline();
    if (done) {
        done(number, photo); // may load or cancel another
    }
}

void PhotoWorkerPool::armDeadline() {
    if (jobs_.empty()) {
        deadline_.stop();
        return;
    }
    const auto next =
        std::min_element(jobs_.begin(), jobs_.end(), [](const Job& one, const Job& other) {
            return one.deadline < other.deadline;
        });
    deadline_.start(static_cast<int>(std::max<qint64>(0, next->deadline.remainingTime())));
}

void PhotoWorkerPool::giveUpLateJobs() {
    Jobs late;
    for (auto job = jobs_.begin(); job != jobs_.end();) {
        const auto next = std::next(job);
        if (job->deadline.hasExpired()) {
            late.splice(late.end(), jobs_, job);
        }
        job = next;
    }
    for (const Job& job : late) {
        if (job.worker != nullptr) {
            retire(job.worker);
        }
    }
    startWorkers();
    dispatch();
    armDeadline();
    for (const Job& job : late) {
        if (job.done) {
            job.done(job.question.number, {});
        }
    }
}

} // namespace kintar::platform
