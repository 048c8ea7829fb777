// The print requests of the name search: stored at once, served from its timer.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace kintar {

enum class PrintRequest : std::int16_t { None = 0, Status = 1, WhoIsIn = 2 };

struct StoredPrintRequest {
    PrintRequest request = PrintRequest::None;
    std::int32_t loc = 0; ///< of WhoIsIn
    bool operator==(const StoredPrintRequest&) const = default;
};

/// The one request that waits and the one that is served. A later request replaces the waiting one;
/// the one that is served goes on and only itself is cleared at its end.
class PrintRequests {
public:
    /// Stores a request; the timer is to be armed where this is true.
    bool store(StoredPrintRequest request);
    /// At the timer's tick: the request to be served now, which is the served one until `ended`.
    /// Nothing where none waits or one is being served.
    std::optional<StoredPrintRequest> take();
    /// The served request has ended; the timer is to be armed where this is true, for the one that
    /// came meanwhile.
    bool ended();

    [[nodiscard]] const StoredPrintRequest& waiting() const { return waiting_; }
    [[nodiscard]] const StoredPrintRequest& served() const { return served_; }

private:
    [[nodiscard]] bool isServing() const { return served_.request != PrintRequest::None; }
    [[nodiscard]] bool isWaiting() const { return waiting_.request != PrintRequest::None; }

    StoredPrintRequest waiting_;
    StoredPrintRequest served_;
};

/// Who prints the reports. One request at a time.
class ReportPrinting {
public:
    /// A line for the status line: how far the request is.
    using Progress = std::function<void(const std::string& text)>;
    /// Called once, never inside `print`. The error's text for the operator; empty where it
    /// printed.
    using Ended = std::function<void(const std::string& error)>;

    virtual ~ReportPrinting() = default;
    /// Begins to serve a request and returns; windows and bus go on.
    virtual void print(const StoredPrintRequest& request, Progress progress, Ended ended) = 0;
    /// Drops the request that is served, if any; its `ended` is not called.
    virtual void cancel() = 0;
};

} // namespace kintar
