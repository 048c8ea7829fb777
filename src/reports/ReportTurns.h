// Who has the report database: one at a time.
#pragma once

#include "platform/Printers.h"

#include <deque>
#include <functional>
#include <memory>

namespace kintar {

/// There is one report database, and the layout beside it reads whatever stands there. So whoever
/// builds it, or builds and prints it, has the turn until he is done: nobody's list comes out under
/// another's heading.
class ReportTurns {
public:
    /// Lasts for as long as it is kept.
    using Turn = std::shared_ptr<void>;

    explicit ReportTurns(platform::EventLoop& loop);
    ReportTurns(const ReportTurns&) = delete;
    ReportTurns& operator=(const ReportTurns&) = delete;
    ~ReportTurns() = default;

    /// Calls `begin` with the turn: at once where nobody has it, otherwise from the event loop when
    /// all that asked before are done. Not any more once this is gone.
    void take(std::function<void(Turn)> begin);

private:
    struct Line {
        platform::EventLoop& loop;
        std::deque<std::function<void(Turn)>> waiting;
        bool taken = false;
    };

    static void serve(const std::shared_ptr<Line>& line);

    std::shared_ptr<Line> line_;
};

} // namespace kintar
