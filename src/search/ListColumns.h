// The columns of the name list, as the site lays them out.
#pragma once

#include "search/Database.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kintar::search {

struct ListColumn {
    std::string caption;
    std::int32_t width = 0; ///< twips
};

/// The site's columns in their order. Database errors pass.
std::vector<ListColumn> readListColumns(const Database& database);

/// The columns of the list of user-defined fields: texts 208 and 209, 2000 and 4000 twips. An empty
/// text leaves the design caption.
std::vector<ListColumn> udfColumns(const std::string& text208, const std::string& text209);

} // namespace kintar::search
