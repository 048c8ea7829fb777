// Finds text in the pages of a report.
#pragma once

#include "reports/engine/Pagination.h"

#include <optional>
#include <string_view>

namespace kintar::reports {

/// The first page after `from` (around the end, `from` itself last) that shows `text`, letter case
/// ignored; nothing where no page does.
std::optional<std::size_t> findPage(const PagedReport& pages, std::string_view text,
                                    std::size_t from);

} // namespace kintar::reports
