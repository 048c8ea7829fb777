// The command line of the demonstration workstation.
#pragma once

#include <QDateTime>

#include <optional>
#include <string>

namespace kintar::demo {

struct Options {
    std::string site;
    std::string scenario; ///< a file, "-" for standard input; empty: no scenario
    QDateTime moment;     ///< when every event happens; invalid: now
};

/// Nothing where the line asks for help or is wrong: what there is to say has been said then, and
/// `status` is what to end with.
std::optional<Options> readOptions(int argc, const char* const* argv, int& status);

} // namespace kintar::demo
