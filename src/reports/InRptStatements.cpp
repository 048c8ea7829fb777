#include "reports/InRptStatements.h"

#include "base/Unicode.h"

#include <initializer_list>

namespace kintar::reports {
namespace {

constexpr std::size_t nameWidth = 64;
constexpr std::size_t placeWidth = 30;

ReportColumn integer(std::string name) {
    return {std::move(name), ColumnType::Integer, 0};
}

ReportColumn text(std::string name, std::size_t width) {
    return {std::move(name), ColumnType::Text, width};
}

/// One allocation for a text that is composed for every row.
std::string joined(std::initializer_list<std::string_view> parts) {
    std::size_t size = 0;
    for (const std::string_view part : parts) {
        size += part.size();
    }
    std::string text;
    text.reserve(size);
    for (const std::string_view part : parts) {
        text += part;
    }
    return text;
}

} // namespace

const std::vector<ReportTable>& inRptTables() {
    static const std::vector<ReportTable> tables{
        {"Totals",
         {integer("Loc"), integer("Dev"), integer("DevTotal"), integer("LocGrpTotal")},
         "TotLocDev",
         {"Loc", "Dev"}},
        {"InRpt",
         {integer("Loc"),
          text("LocName", placeWidth),
          integer("Dev"),
          text("DevName", placeWidth),
          text("Name", nameWidth),
          text("Company", placeWidth),
          {"LastUsed", ColumnType::DateTime, 0}},
         "LocDev",
         {"Loc", "Dev"}},
    };
    return tables;
}

std::string locGrpQuery(std::int32_t loc) {
    return "Select LocGrp From Loc Where Loc = " + std::to_string(loc);
}

std::string groupLocationsQuery(std::int32_t locGrp) {
    return "Select Loc From Loc Where LocGrp = " + std::to_string(locGrp);
}

std::string activeCardsQuery(std::int32_t locGrp) {
    return "Select ID, NameID From Cards Where LocGrp = " + std::to_string(locGrp) +
           " And Status <> 0 Order By NameID";
}

std::string cardUsesQuery(std::int32_t nameId, std::string_view locationList,
                          std::string_view timeLimit) {
    constexpr std::string_view usesOfAHolder =
        "Select LocCards.ID, LocCards.CardID, InOut1 From LocCards Inner Join Cards "
        "On LocCards.CardID = Cards.ID Where Cards.NameID = ";
    // Two blanks after the second And: this text is a contract.
    return joined({usesOfAHolder, std::to_string(nameId), " And Loc In (", locationList,
                   ") And  LocCards.LastDate > ", timeLimit, " Order By CardID, LastDate Desc"});
}

std::string detailQuery(std::int32_t locCardsId) {
    return joined(
        {"Select Loc.Loc, Loc.Name as LocName, Dev.Name as DevName, [Names].FName, "
         "[Names].LName, Company.Name as CompName, LocCards.LastDev, LocCards.LastDate From "
         "(Company Right Join ([Names] Right Join (Cards Right Join (Dev Right Join (LocCards "
         "Left Join Loc On LocCards.Loc = Loc.Loc) On Dev.Loc = LocCards.Loc And Dev.Device = "
         "LocCards.LastDev) On Cards.ID = LocCards.CardID) On Cards.NameID = [Names].ID) ON "
         "[Names].LocGrp = Company.LocGrp And [Names].Company = Company.Company) Where "
         "LocCards.ID =",
         std::to_string(locCardsId), " And Cards.Status <> 0"});
}

std::string insertInRpt(const InRptRow& row, TarnRec& record) {
    const auto quoted = [&record](const std::string& value, std::size_t width) {
        return record.SqlText(cutToWidth(value, width));
    };
    return joined(
        {"Insert Into InRpt (Loc, LocName, Dev, DevName, Name, Company, LastUsed) VALUES (",
         std::to_string(row.loc), ", ", quoted(row.locName, placeWidth), ", ",
         std::to_string(row.dev), ", ", quoted(row.devName, placeWidth), ", ",
         quoted(row.name, nameWidth), ", ", quoted(row.company, placeWidth), ", ",
         row.lastUsed ? record.SqlDate(*row.lastUsed) : "Null", ")"});
}

std::string totalsQuery() {
    return "Select Loc, Dev From InRpt Order By Loc, Dev";
}

std::string insertTotals(const TotalsRow& row) {
    return "Insert Into Totals (Loc, Dev, DevTotal, LocGrpTotal) Values (" +
           std::to_string(row.loc) + ", " + std::to_string(row.dev) + ", " +
           std::to_string(row.devTotal) + ", " + std::to_string(row.locGrpTotal) + ")";
}

std::string cutToWidth(std::string_view text, std::size_t width) {
    if (text.size() <= width) {
        return unicode::toValidUtf8(text);
    }
    std::string valid = unicode::toValidUtf8(text);
    std::size_t characters = 0;
    for (std::size_t i = 0; i < valid.size(); ++i) {
        if (!unicode::continuesCharacter(valid[i]) && ++characters > width) {
            return valid.substr(0, i);
        }
    }
    return valid;
}

} // namespace kintar::reports
