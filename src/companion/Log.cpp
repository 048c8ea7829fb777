#include "companion/Log.h"

#include <cstdio>
#include <cstdlib>

namespace kintar::companion {

void StandardErrorLog::write(LogLevel level, const std::string& line) {
    const char* journal = std::getenv("JOURNAL_STREAM");
    const char* priority = "";
    if (journal != nullptr && *journal != '\0') {
        priority = level == LogLevel::Error ? "<3>" : level == LogLevel::Warning ? "<4>" : "<5>";
    }
    std::fprintf(stderr, "%skintar3: %s\n", priority, plainLine(line).c_str());
}

std::string plainLine(const std::string& text) {
    std::string line;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool control = byte < 0x20 || byte == 0x7F;
        // CR LF is one break, and so one blank.
        if (!control) {
            line += c;
        } else if (!line.ends_with(' ')) {
            line += ' ';
        }
    }
    return line;
}

} // namespace kintar::companion
