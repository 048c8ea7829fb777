// The number of the run-time error that something raises.
#pragma once

#include "base/RunTimeError.h"

#include <functional>

namespace kintar::testing {

/// 0 where nothing is raised; what is no run-time error passes.
inline int errorNumber(const std::function<void()>& action) {
    try {
        action();
    } catch (const RunTimeError& error) {
        return error.number();
    }
    return 0;
}

} // namespace kintar::testing
