// A connection of its own for long reads on a site.
#pragma once

#include "companion/DatabaseConnection.h"
#include "server/Companion.h"

#include <memory>
#include <utility>

namespace kintar::companion {

/// Reads the database of a site; never writes.
class SiteReadSession final : public ReadSession {
public:
    /// `connection` is for this session alone.
    explicit SiteReadSession(std::unique_ptr<DatabaseConnection> connection)
        : connection_(std::move(connection)) {}

    Connection& connection() override { return *connection_; }
    void beginRead() override { connection_->beginRead(); }
    void endRead() noexcept override { connection_->endRead(); }
    void stopWhen(const std::atomic<bool>* stop) override { connection_->stopWhen(stop); }

private:
    std::unique_ptr<DatabaseConnection> connection_;
};

} // namespace kintar::companion
