// A long list being sorted.
#pragma once

#include "search/NameList.h"

#include <QObject>

#include <functional>
#include <list>
#include <memory>

namespace kintar::search {

/// Sorts one list at a time on a thread of its own, so that windows go on meanwhile.
class NameSort final : public QObject {
public:
    /// What is sorted within an eye's blink need not be sorted here.
    static constexpr std::size_t longList = 50000;

    NameSort();
    NameSort(const NameSort&) = delete;
    NameSort& operator=(const NameSort&) = delete;
    ~NameSort() override;

    /// Starts; a sort that still runs is dropped. `ended` gets the order, back on this thread.
    void start(NameList::Sorting sorting, std::function<void(NameList::Order)> ended);
    [[nodiscard]] bool isRunning() const { return current_ != nullptr; }
    /// Drops the sort and does not wait for it; its end is not told any more.
    void stop();

private:
    struct Run;
    void runEnded(Run& run);

    std::list<std::unique_ptr<Run>> runs_; ///< those that were dropped, until they have noticed
    Run* current_ = nullptr;
};

} // namespace kintar::search
