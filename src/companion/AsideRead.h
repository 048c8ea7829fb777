// A SELECT read on a thread of its own.
#pragma once

#include "server/Companion.h"

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>

namespace kintar::companion {

class DatabaseConnection;

/// Reads on a connection that nothing else uses meanwhile. What is asked to stop stops at the
/// engine's next look: within milliseconds, or when it has sorted what it has read.
class AsideRead final : public PendingRecordset {
public:
    /// `ended` is called on the thread that reads.
    AsideRead(std::shared_ptr<DatabaseConnection> connection, std::string sql,
              std::function<void()> ended);
    ~AsideRead() override;

    bool waitFor(std::chrono::milliseconds limit) override;
    void stop() override { stop_ = true; }
    Recordset take() override;

private:
    void read(const std::string& sql, const std::function<void()>& ended);

    std::shared_ptr<DatabaseConnection> connection_;
    std::atomic<bool> stop_ = false;
    std::promise<Recordset> promise_;
    std::future<Recordset> rows_;
    std::thread thread_;
};

} // namespace kintar::companion
