// What kintar-report is asked for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kintar::report {

struct Options {
    bool whoIsIn = false;
    std::string site;
    std::int32_t loc = 0;
    std::string pdfFile;
    std::string printer;
    std::string paper; ///< empty: what the locale uses
    int copies = 1;
};

/// Reads the command line. Nothing where there is nothing left to be done; `status` is the exit
/// status then, and what there was to say has been said.
std::optional<Options> readOptions(int argc, char** argv, int& status);

} // namespace kintar::report
