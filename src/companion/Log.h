// Where the companion's reports go.
#pragma once

#include <cstdint>
#include <string>

namespace kintar::companion {

enum class LogLevel : std::uint8_t { Error, Warning, Notice };

/// Takes finished lines. Never throws.
class Log {
public:
    virtual ~Log() = default;
    virtual void write(LogLevel level, const std::string& line) = 0;
};

/// Lines on standard error; with the journal's priority in front of each where standard error goes
/// to the journal (`JOURNAL_STREAM` is set).
class StandardErrorLog final : public Log {
public:
    void write(LogLevel level, const std::string& line) override;
};

/// A line without what could start another or steer a terminal: control characters become blanks.
std::string plainLine(const std::string& text);

} // namespace kintar::companion
