// A statement being read for the name list.
#pragma once

#include "search/Database.h"

#include <QObject>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kintar::search {

/// Reads one statement at a time. What is there within a moment is there when `start` returns, so
/// that most searches are over before anything could be seen of them.
class NameFill final : public QObject {
public:
    /// `ended` is called when a read that took longer than a moment has ended, well or not.
    explicit NameFill(std::function<void()> ended) : ended_(std::move(ended)) {}

    /// Starts reading; a read that still runs is dropped. Throws where the statement cannot be
    /// read, as far as a moment shows that. True where the rows are there: take them.
    bool start(const Database& database, const std::string& sql);
    [[nodiscard]] bool isRunning() const { return pending_ != nullptr; }
    /// The rows; throws what the read threw. Ends the read.
    Recordset take();
    /// Drops the read and does not wait for it; its end is not told any more.
    void stop();

private:
    void forgetDropped();

    std::function<void()> ended_;
    /// Which read is under way: an end that was announced by an earlier one counts no more.
    std::shared_ptr<int> generation_;
    std::unique_ptr<PendingRecordset> pending_;
    std::vector<std::unique_ptr<PendingRecordset>> dropped_; ///< until they have noticed
};

} // namespace kintar::search
