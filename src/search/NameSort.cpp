#include "search/NameSort.h"

#include <QMetaObject>

#include <atomic>
#include <exception>
#include <thread>
#include <utility>

namespace kintar::search {

struct NameSort::Run {
    std::function<void(NameList::Order)> ended;
    std::atomic<bool> stop = false;
    NameList::Order order;
    std::exception_ptr error;
    std::thread thread;
};

NameSort::NameSort() = default;

NameSort::~NameSort() {
    stop();
    for (const auto& run : runs_) {
        run->thread.join();
    }
}

void NameSort::start(NameList::Sorting sorting, std::function<void(NameList::Order)> ended) {
    stop();
    runs_.push_back(std::make_unique<Run>());
    current_ = runs_.back().get();
    current_->ended = std::move(ended);
    current_->thread = std::thread([this, run = current_, sorting = std::move(sorting)] {
        try {
            run->order = sorting(run->stop);
        } catch (...) {
            run->error = std::current_exception();
        }
        QMetaObject::invokeMethod(
            this, [this, run] { runEnded(*run); }, Qt::QueuedConnection);
    });
}

void NameSort::stop() {
    if (current_ != nullptr) {
        std::exchange(current_, nullptr)->stop = true;
    }
}

void NameSort::runEnded(Run& run) {
    run.thread.join();
    const bool isWanted = &run == current_;
    std::unique_ptr<Run> ended;
    runs_.remove_if([&](std::unique_ptr<Run>& known) {
        const bool isIt = known.get() == &run;
        if (isIt) {
            ended = std::move(known);
        }
        return isIt;
    });
    if (!isWanted) {
        return;
    }
    current_ = nullptr;
    if (ended->error) {
        std::rethrow_exception(ended->error);
    }
    ended->ended(std::move(ended->order));
}

} // namespace kintar::search
