// The statements of the who-is-in report, to the character, and the tables they fill.
#pragma once

#include "base/DateTime.h"
#include "server/Companion.h"
#include "server/ReportDatabase.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::reports {

/// A row of `InRpt`, its texts not yet cut.
struct InRptRow {
    std::int32_t loc = 0;
    std::string locName;
    std::int32_t dev = 0;
    std::string devName;
    std::string name;
    std::string company;
    std::optional<DateTime> lastUsed; ///< nothing where the database holds no date
};

struct TotalsRow {
    std::int32_t loc = 0;
    std::int32_t dev = 0;
    std::int32_t devTotal = 0;
    std::int32_t locGrpTotal = 0;
    bool operator==(const TotalsRow&) const = default;
};

/// `Totals` and `InRpt`, with their indexes.
const std::vector<ReportTable>& inRptTables();

std::string locGrpQuery(std::int32_t loc);
std::string groupLocationsQuery(std::int32_t locGrp);
std::string activeCardsQuery(std::int32_t locGrp);
/// The uses of a holder's cards, each card's latest first. `timeLimit` is a date-time literal.
std::string cardUsesQuery(std::int32_t nameId, std::string_view locationList,
                          std::string_view timeLimit);
std::string detailQuery(std::int32_t locCardsId);
/// Texts are cut to the widths of their columns.
std::string insertInRpt(const InRptRow& row, TarnRec& record);
std::string totalsQuery();
std::string insertTotals(const TotalsRow& row);

/// The first `width` code points of a text, as valid UTF-8.
std::string cutToWidth(std::string_view text, std::size_t width);

} // namespace kintar::reports
