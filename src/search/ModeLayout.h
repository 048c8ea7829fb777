// What the selection mode makes of the dialog.
#pragma once

#include <cstdint>

namespace kintar::search {

/// Widths are twips of the form.
struct ModeLayout {
    int width = 0;
    /// OK is shown, In/Out is not; otherwise the other way round.
    bool picking = false;
    /// Cancel stands where OK stands; otherwise at its alternative position.
    bool cancelBesideOk = false;
    bool advancedSearch = false;
};

/// Any value below 1 is browsing, 1 and above is picking; 2 offers no advanced search.
ModeLayout modeLayout(std::int16_t mode);

} // namespace kintar::search
