// What is wrong with a report file, or with what a caller asks of a report.
#pragma once

#include "base/RunTimeError.h"

#include <string>

namespace kintar::reports {

/// A run-time error, 1004, whose text says what is wrong, with the line of the file where that is
/// known.
class ReportError : public RunTimeError {
public:
    explicit ReportError(const std::string& text) : RunTimeError(1004, text) {}
    static ReportError atLine(const std::string& file, long line, const std::string& text) {
        return ReportError(file + ", line " + std::to_string(line) + ": " + text);
    }
};

} // namespace kintar::reports
