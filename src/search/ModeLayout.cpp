#include "search/ModeLayout.h"

#include "search/NameQuery.h"

namespace kintar::search {

ModeLayout modeLayout(std::int16_t mode) {
    constexpr int browsingWidth = 4300;
    constexpr int pickingWidth = 4815;
    const bool picking = mode >= 1;
    return {.width = picking ? pickingWidth : browsingWidth,
            .picking = picking,
            .cancelBesideOk = picking,
            .advancedSearch = mode != guardTourMode};
}

} // namespace kintar::search
