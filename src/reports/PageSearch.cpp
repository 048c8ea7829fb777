#include "reports/PageSearch.h"

#include "base/Unicode.h"

#include <algorithm>

namespace kintar::reports {

std::optional<std::size_t> findPage(const PagedReport& pages, std::string_view text,
                                    std::size_t from) {
    const std::string wanted = unicode::fold(text);
    const std::size_t count = pages.pageCount();
    for (std::size_t step = 1; step <= count; ++step) {
        const std::size_t page = (from + step) % count;
        const auto items = pages.pageItems(page);
        if (std::ranges::any_of(items, [&wanted](const Item& item) {
                return unicode::fold(item.text).find(wanted) != std::string::npos;
            })) {
            return page;
        }
    }
    return std::nullopt;
}

} // namespace kintar::reports
