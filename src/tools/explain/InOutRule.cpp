// Who of some names is in, by tables that the line holds.
#include "base/DateTime.h"
#include "search/Board.h"
#include "search/HolderState.h"
#include "tools/explain/Rules.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::explain {
namespace {

bool sameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char left, char right) {
        return std::tolower(static_cast<unsigned char>(left)) ==
               std::tolower(static_cast<unsigned char>(right));
    });
}

/// A value of a row by its column, letter case ignored; null where the row has no such column.
const Json& cell(const Json& row, std::string_view column) {
    static const Json null;
    for (const auto& [name, value] : row.items()) {
        if (sameName(name, column)) {
            return value;
        }
    }
    return null;
}

/// A value as the database would show it; empty for null.
std::string cellText(const Json& row, std::string_view column) {
    const Json& value = cell(row, column);
    return value.is_null()     ? std::string()
           : value.is_string() ? value.get<std::string>()
                               : value.dump();
}

bool isTrue(const Json& value) {
    return value.is_boolean() ? value.get<bool>() : value.is_number() && value != 0;
}

std::vector<Json> tableRows(const Json& input, const char* table) {
    const auto tables = input.find("tables");
    if (tables == input.end() || !tables->is_object()) {
        throw BadInput("'tables' is not an object of tables");
    }
    for (const auto& [name, rows] : tables->items()) {
        if (sameName(name, table)) {
            return objects(*tables, name.c_str());
        }
    }
    return {};
}

/// A row that the statement of the states gives, and what it is ordered by.
struct StateRow {
    std::optional<std::string> lastDate; ///< as the database holds it
    board::LastUse use;
};

std::optional<std::string> databaseDate(const Json& value) {
    if (!value.is_string()) {
        return std::nullopt;
    }
    const std::string text = value.get<std::string>();
    const std::optional<DateTime> moment = DateTime::fromIso(text);
    return moment ? moment->isoWithBlank() : text;
}

StateRow stateRow(const Json& locCard, const LocaleFormats& formats) {
    StateRow row;
    row.lastDate = databaseDate(cell(locCard, "LastDate"));
    row.use.loc = cellText(locCard, "Loc");
    row.use.lastDev = cellText(locCard, "LastDev");
    if (row.lastDate) {
        const std::optional<DateTime> moment = DateTime::fromIso(*row.lastDate);
        row.use.lastDate = moment ? formats.formatGeneralDate(*moment) : *row.lastDate;
    }
    row.use.inOut = cellText(locCard, "Inout1") + "  " + cellText(locCard, "Inout2") + "  " +
                    cellText(locCard, "Inout3") + "  " + cellText(locCard, "Inout4");
    return row;
}

/// The tables as the statement of the states reads them.
class States {
public:
    explicit States(const Json& input)
        : cards_(tableRows(input, "Cards")), locCards_(tableRows(input, "LocCards")),
          formats_(locale(input, "locale")) {}

    /// The most recent use of an active card, in the order of the tables where two are equal.
    [[nodiscard]] std::optional<board::LastUse> lastUse(std::int32_t nameId) const {
        std::optional<StateRow> latest;
        for (const Json& card : cards_) {
            if (cell(card, "NameID") == nameId && isTrue(cell(card, "Status"))) {
                takeUses(card, latest);
            }
        }
        return latest ? std::optional(latest->use) : std::nullopt;
    }

private:
    void takeUses(const Json& card, std::optional<StateRow>& latest) const {
        bool used = false;
        for (const Json& locCard : locCards_) {
            if (cell(locCard, "CardID") == cell(card, "ID")) {
                used = true;
                takeLater(stateRow(locCard, formats_), latest);
            }
        }
        if (!used) {
            takeLater(stateRow(Json::object(), formats_), latest);
        }
    }
    static void takeLater(StateRow row, std::optional<StateRow>& latest) {
        if (!latest || row.lastDate > latest->lastDate) {
            latest = std::move(row);
        }
    }

    std::vector<Json> cards_;
    std::vector<Json> locCards_;
    LocaleFormats formats_;
};

} // namespace

void applyInOut(const Json& input, Answer& answer) {
    const States states(input);
    board::Board board;
    Json items = Json::array();
    for (const Json& row : objects(input, "names")) {
        const std::int32_t id = number32(row, "ID");
        const std::string name = textOrEmpty(row, "Name");
        const board::HolderState state = board::stateOf(states.lastUse(id));
        board.add(id, name);
        board.setIcon(board.size() - 1, state.icon);
        items.push_back({{"ID", id},
                         {"icon", static_cast<int>(state.icon)},
                         {"sort", board::sortText(state.icon, name)},
                         {"lastLoc", state.lastLoc},
                         {"lastDev", state.lastDev},
                         {"lastDate", state.lastDate}});
    }
    const board::HeadCount heads = board.headCount();
    answer.add("items", items).add("in", heads.in).add("out", heads.out);
}

} // namespace kintar::explain
