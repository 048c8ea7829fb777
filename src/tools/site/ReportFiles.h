// The report files that a new site gets.
#pragma once

#include <array>
#include <filesystem>
#include <string_view>

namespace kintar::site {

struct ReportFileText {
    std::string_view name;
    std::string_view text;
};

/// The report files that come with the system, by the names that the server asks for.
const std::array<ReportFileText, 2>& reportFiles();

/// Writes them into a folder that has none of them.
void writeReportFiles(const std::filesystem::path& folder);

} // namespace kintar::site
