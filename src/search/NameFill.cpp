#include "search/NameFill.h"

#include <QMetaObject>

#include <chrono>
#include <utility>

namespace kintar::search {
namespace {

/// Shorter than what an operator takes for a wait.
constexpr std::chrono::milliseconds moment{100};

} // namespace

bool NameFill::start(const Database& database, const std::string& sql) {
    stop();
    generation_ = std::make_shared<int>(0);
    const std::weak_ptr<int> own = generation_;
    auto pending = database.record.BeginRecordset(sql, database.connection, [this, own] {
        // From whatever thread: back to the windows' own. The pending read ends before this does.
        QMetaObject::invokeMethod(
            this,
            [this, own] {
                forgetDropped();
                if (!own.expired() && isRunning()) {
                    ended_();
                }
            },
            Qt::QueuedConnection);
    });
    pending_ = std::move(pending);
    return pending_->waitFor(moment);
}

Recordset NameFill::take() {
    generation_.reset();
    const auto pending = std::exchange(pending_, nullptr);
    return pending->take();
}

void NameFill::stop() {
    generation_.reset();
    if (pending_) {
        pending_->stop();
        dropped_.push_back(std::move(pending_));
    }
    forgetDropped();
}

void NameFill::forgetDropped() {
    std::erase_if(dropped_, [](const std::unique_ptr<PendingRecordset>& read) {
        return read->waitFor(std::chrono::milliseconds(0));
    });
}

} // namespace kintar::search
