// Reports as PDF files.
#pragma once

#include "reports/engine/Pagination.h"

#include <atomic>
#include <optional>
#include <string>
#include <string_view>

namespace kintar::reports {

/// A4 or Letter, as the system's locale has it.
PageSize usualPaper();
/// "A4" or "Letter", letter case ignored; nothing for any other name.
std::optional<PageSize> paperNamed(std::string_view name);

/// Lays out the report and writes it to `path`: whole, or not at all. Throws ReportError where that
/// fails. Ends early, with nothing written, where `cancelled` becomes true. Any thread.
void exportPdf(const Report& report, PageSize paper, const std::string& path,
               const std::atomic<bool>& cancelled);

} // namespace kintar::reports
