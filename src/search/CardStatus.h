// What the detail pane says of a name's cards.
#pragma once

#include "base/LocaleFormats.h"
#include "search/Database.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar::search {

/// The visitor form of the status label.
inline constexpr std::string_view visitorStatus = "   Visitor";

struct CardStatus {
    std::string status;  ///< of the status label
    std::string lastUse; ///< of the last-use label
    bool visitor = false;
};

/// The texts for a name with the tag `tag` (the third column of its row). Only the most recent use
/// of an active card counts. What cannot be read leaves its label as far as it got.
CardStatus readCardStatus(const Database& database, std::string_view tag, std::int32_t nameId,
                          const LocaleFormats& formats);

} // namespace kintar::search
