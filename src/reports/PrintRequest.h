// What is asked of the print timer.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace kintar {

enum class PrintRequest : std::int16_t { None = 0, Status = 1, WhoIsIn = 2 };

struct StoredPrintRequest {
    PrintRequest request = PrintRequest::None;
    std::int32_t loc = 0; ///< of WhoIsIn
};

/// A line for the operator: how far the request is.
using PrintProgress = std::function<void(const std::string& text)>;
/// Called once, from the event loop. The error's text for the operator; empty where it printed.
using PrintEnded = std::function<void(const std::string& error)>;

} // namespace kintar
