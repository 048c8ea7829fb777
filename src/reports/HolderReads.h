// What the who-is-in build reads about holders, group by group.
#pragma once

#include "server/Companion.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <vector>

namespace kintar::reports {

/// Holders that are read together.
struct HolderGroup {
    std::vector<std::string> statements; ///< for the uses of each holder's cards
    std::size_t cards = 0;
};

/// What a group has given.
struct HolderDetails {
    std::vector<Recordset> uses; ///< the details of those that count, in order, up to an error
    std::exception_ptr error;
    std::size_t holders = 0;
    std::size_t cards = 0;
};

/// Reads groups in their order, each in one state of the data: two at a time, on threads and
/// connections of their own, while the caller works on what came before. Where no such connection
/// can be had, a group is read on `data` when it is taken. Used by one thread.
class HolderReads {
public:
    using NewSession = std::function<std::unique_ptr<ReadSession>()>;

    /// `record` and `data` outlive it. `newSession` may be empty, throw, or give nothing.
    HolderReads(TarnRec& record, Connection& data, const NewSession& newSession);
    HolderReads(const HolderReads&) = delete;
    HolderReads& operator=(const HolderReads&) = delete;
    /// Stops what is being read.
    ~HolderReads();

    [[nodiscard]] bool areAside() const { return !sessions_.empty(); }
    [[nodiscard]] bool canBegin() const;
    /// Begins another group; only where it can.
    void begin(HolderGroup group);
    /// No group has been begun that is not taken.
    [[nodiscard]] bool isIdle() const { return groups_.empty(); }
    /// Waits at most so long; whether the first group can be taken without waiting.
    bool waitFor(std::chrono::milliseconds limit);
    /// What the first of the groups begun has given; waits for it. Throws nothing of what was read.
    HolderDetails take();

private:
    TarnRec& record_;
    Connection& data_;
    std::atomic<bool> stop_ = false;
    std::vector<std::unique_ptr<ReadSession>> sessions_;
    std::size_t begun_ = 0;
    std::deque<std::future<HolderDetails>> groups_;
};

} // namespace kintar::reports
