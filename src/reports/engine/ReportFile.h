// Reads report files.
#pragma once

#include "reports/engine/ReportDefinition.h"

#include <string>
#include <string_view>

namespace kintar::reports {

/// The report that `text` describes. Throws ReportError, with `file` and the line, where it is no
/// report file or names something that it does not have.
ReportDefinition readReportFile(std::string_view text, const std::string& file);

} // namespace kintar::reports
