#include "search/ListColumns.h"

#include <algorithm>

namespace kintar::search {

std::vector<ListColumn> readListColumns(const Database& database) {
    Recordset rows =
        database.open("SELECT * FROM FormData WHERE FORM = 'ListNAMESEARCH' ORDER BY INDEX");
    std::vector<ListColumn> columns;
    for (; !rows.atEnd(); rows.MoveNext()) {
        columns.push_back({.caption = rows.field("Caption").text(),
                           .width = std::max(rows.field("Width").leadingLong(), 0)});
    }
    return columns;
}

std::vector<ListColumn> udfColumns(const std::string& text208, const std::string& text209) {
    return {{.caption = text208.empty() ? "Field" : text208, .width = 2000},
            {.caption = text209.empty() ? "Value" : text209, .width = 4000}};
}

} // namespace kintar::search
