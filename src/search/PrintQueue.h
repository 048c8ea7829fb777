// The print requests of the name search.
#pragma once

#include "search/NameSearchSurroundings.h"

#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace kintar::search {

/// `Timer1` and what it is armed for: one request, replaced by a later one until the tick; while
/// one is being printed the next waits its turn. Every request is announced as ended: when it was
/// printed, when it failed, when another one took its place and when it is dropped with its form.
/// The same request made twice before the tick is one.
class PrintQueue final {
public:
    static constexpr std::int16_t statusReport = 1;
    static constexpr std::int16_t whoIsIn = 2;

    /// A line of the form's, for how far a print request is and why it failed.
    using ShowStatus = std::function<void(const std::string& text)>;

    /// The surroundings outlive this.
    explicit PrintQueue(NameSearchSurroundings& surroundings, ShowStatus showStatus = {});
    PrintQueue(const PrintQueue&) = delete;
    PrintQueue& operator=(const PrintQueue&) = delete;
    ~PrintQueue() = default;

    void request(std::int16_t request, std::int32_t loc);
    /// The form unloads: a request that waits is given up.
    void giveUp();

    [[nodiscard]] std::int16_t PrintRequest() const { return request_; }
    [[nodiscard]] QTimer& Timer1() { return timer_; }

private:
    void tick();
    void show(const std::string& text) const;
    void printed(std::int16_t request, const std::string& error);

    NameSearchSurroundings& surroundings_;
    ShowStatus showStatus_;
    QTimer timer_;
    std::int16_t request_ = 0; ///< 0: none waits
    std::int32_t loc_ = 0;
    bool printing_ = false;
    std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

} // namespace kintar::search
