#include "reports/ReportTurns.h"

#include <utility>

namespace kintar {

ReportTurns::ReportTurns(platform::EventLoop& loop)
    : line_(std::make_shared<Line>(Line{loop, {}, false})) {}

void ReportTurns::take(std::function<void(Turn)> begin) {
    line_->waiting.push_back(std::move(begin));
    serve(line_);
}

void ReportTurns::serve(const std::shared_ptr<Line>& line) {
    if (line->taken || line->waiting.empty()) {
        return;
    }
    line->taken = true;
    const std::function<void(Turn)> begin = std::move(line->waiting.front());
    line->waiting.pop_front();
    begin(Turn(nullptr, [held = std::weak_ptr<Line>(line)](void*) {
        if (const auto known = held.lock()) {
            known->taken = false;
            known->loop.later([held] {
                if (const auto next = held.lock()) {
                    serve(next);
                }
            });
        }
    }));
}

} // namespace kintar
