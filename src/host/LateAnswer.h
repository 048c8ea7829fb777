// The answer to a call whose work goes on after its handler has returned.
#pragma once

#include "server/ClassTable.h"

#include <functional>
#include <optional>
#include <utility>

namespace kintar::host {

/// Finishes once: by completion, by being dropped uncompleted (which is no error), or, without a
/// word, by cancellation.
class LateAnswer {
public:
    using Finish = std::function<void(std::optional<RunTimeError>)>;

    explicit LateAnswer(Finish finish) : finish_(std::move(finish)) {}
    LateAnswer(const LateAnswer&) = delete;
    LateAnswer& operator=(const LateAnswer&) = delete;
    ~LateAnswer() { complete(std::nullopt); }

    void complete(std::optional<RunTimeError> error) {
        if (const Finish finish = std::exchange(finish_, nullptr)) {
            finish(std::move(error));
        }
    }
    /// Nothing that happens from now on finishes the call.
    void cancel() { finish_ = nullptr; }

private:
    Finish finish_;
};

} // namespace kintar::host
