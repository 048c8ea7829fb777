#include "search/PrintQueue.h"

#include "platform/qt/Controls.h"

#include <exception>
#include <utility>

namespace kintar::search {

PrintQueue::PrintQueue(NameSearchSurroundings& surroundings, ShowStatus showStatus)
    : surroundings_(surroundings), showStatus_(std::move(showStatus)) {
    platform::nameControl(timer_, "Timer1", "timer");
    timer_.setInterval(1);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
}

void PrintQueue::request(std::int16_t request, std::int32_t loc) {
    const std::int16_t waiting = std::exchange(request_, request);
    const bool replaced = waiting != 0 && (waiting != request || loc_ != loc);
    loc_ = loc;
    timer_.start();
    if (replaced) {
        surroundings_.globals.nameSearch.printEnded.tell(waiting,
                                                         "A later request took its place.");
    }
}

void PrintQueue::giveUp() {
    timer_.stop();
    if (const std::int16_t dropped = std::exchange(request_, std::int16_t{0}); dropped != 0) {
        surroundings_.globals.nameSearch.printEnded.tell(
            dropped, "The name search was closed before printing began.");
    }
}

void PrintQueue::tick() {
    timer_.stop();
    if (printing_ || request_ == 0) {
        return;
    }
    const std::int16_t request = std::exchange(request_, std::int16_t{0});
    if (!surroundings_.neighbours.print) {
        // The one place that says so.
        surroundings_.globals.nameSearch.printEnded.tell(request,
                                                         "Printing is not part of this program.");
        return;
    }
    printing_ = true;
    // The form may be gone when printing ends; the clients are told all the same.
    const std::weak_ptr<int> alive = alive_;
    NameSearchResult& told = surroundings_.globals.nameSearch;
    const auto ended = [this, alive, &told, request](const std::string& error) {
        if (alive.expired()) {
            told.printEnded.tell(request, error);
        } else {
            printed(request, error);
        }
    };
    const auto progress = [this, alive](const std::string& text) {
        if (!alive.expired()) {
            show(text);
        }
    };
    try {
        surroundings_.neighbours.print(request, loc_, progress, ended);
    } catch (const std::exception& error) {
        surroundings_.globals.reportError(error, "frmNameSearch/Timer1");
        ended(error.what());
    }
}

void PrintQueue::show(const std::string& text) const {
    if (showStatus_) {
        showStatus_(text);
    }
}

void PrintQueue::printed(std::int16_t request, const std::string& error) {
    printing_ = false;
    show(error.empty() ? "Sent to the printer." : error);
    if (request_ != 0) {
        timer_.start();
    }
    surroundings_.globals.nameSearch.printEnded.tell(request, error);
}

} // namespace kintar::search
