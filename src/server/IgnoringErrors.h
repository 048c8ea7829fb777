// Steps whose errors are dropped, by name: where the rules of a routine are to go on with the next
// statement, or to ask only whether a step succeeded.
#pragma once

#include <exception>
#include <utility>

namespace kintar {

/// Runs a step; whether it ended without an error.
template <class Step>
bool succeeds(Step&& step) {
    try {
        std::forward<Step>(step)();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

/// Runs a step and drops its error.
template <class Step>
void ignoringErrors(Step&& step) {
    static_cast<void>(succeeds(std::forward<Step>(step)));
}

} // namespace kintar
