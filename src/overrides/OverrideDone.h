// Whether the override editor has closed since it was last opened.
#pragma once

#include "server/ClassTable.h"

#include <vector>

namespace kintar {

/// One flag a process, shared by the window and all facades. Every assignment is told to the
/// creators of all living facades, so that they can wait instead of asking again and again.
class OverrideDone {
public:
    [[nodiscard]] bool get() const { return done_; }
    void set(bool done) {
        done_ = done;
        // A copy: who is told may go.
        const std::vector<ObjectSignals*> told = told_;
        for (ObjectSignals* signals : told) {
            signals->changed("Done");
        }
    }

    void add(ObjectSignals& signals) { told_.push_back(&signals); }
    void remove(ObjectSignals& signals) { std::erase(told_, &signals); }

private:
    bool done_ = false;
    std::vector<ObjectSignals*> told_;
};

} // namespace kintar
