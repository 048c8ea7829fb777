// What kintar-sql does, apart from its command line.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace kintar::tools {

enum class RowsFormat : std::uint8_t { Aligned, Csv, Json };

struct SqlRequest {
    std::string site;      ///< the site's folder
    std::string statement; ///< of the dialect
    RowsFormat format = RowsFormat::Aligned;
    bool explain = false; ///< tell what the engine gets, and run nothing
    bool write = false;   ///< statements that write are allowed
};

/// Runs or explains a statement on a site. Throws RunTimeError with a text that says what was
/// wrong.
void runSql(const SqlRequest& request, std::ostream& out);

} // namespace kintar::tools
