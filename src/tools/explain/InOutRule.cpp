// Who of some names is in, by tables that the line holds.
#include "base/DateTime.h"
#include "search/Board.h"
#include "search/HolderState.h"
#include "tools/explain/Rules.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <map>
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

/// A row's value as the one field of an object; an empty object where it is null.
Json fieldOf(const Json& row, const char* column) {
    const Json& value = cell(row, column);
    return value.is_null() ? Json::object() : Json{{column, value}};
}

/// Rows by a column that refers to other rows, in the order of the table. A row whose column is
/// null belongs to none.
using RowsByKey = std::map<std::int32_t, std::vector<Json>>;

RowsByKey rowsBy(const char* column, const std::vector<Json>& rows) {
    RowsByKey sorted;
    for (const Json& row : rows) {
        const Json key = fieldOf(row, column);
        if (has(key, column)) {
            sorted[number32(key, column)].push_back(row);
        }
    }
    return sorted;
}

const std::vector<Json>& rowsOf(const RowsByKey& sorted, const Json& key, const char* column) {
    static const std::vector<Json> none;
    const auto found = has(key, column) ? sorted.find(number32(key, column)) : sorted.end();
    return found == sorted.end() ? none : found->second;
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
    std::optional<DateTime> lastDate;
    board::LastUse use;
};

StateRow stateRow(const Json& locCard, const LocaleFormats& formats) {
    StateRow row;
    row.use.loc = cellText(locCard, "Loc");
    row.use.lastDev = cellText(locCard, "LastDev");
    const Json lastDate = fieldOf(locCard, "LastDate");
    if (has(lastDate, "LastDate")) {
        row.lastDate = dateTime(lastDate, "LastDate");
        row.use.lastDate = formats.formatGeneralDate(*row.lastDate);
    }
    row.use.inOut = cellText(locCard, "Inout1") + "  " + cellText(locCard, "Inout2") + "  " +
                    cellText(locCard, "Inout3") + "  " + cellText(locCard, "Inout4");
    return row;
}

/// The tables as the statement of the states reads them.
class States {
public:
    explicit States(const Json& input)
        : cards_(rowsBy("NameID", tableRows(input, "Cards"))),
          locCards_(rowsBy("CardID", tableRows(input, "LocCards"))),
          formats_(locale(input, "locale")) {}

    /// The most recent use of an active card, in the order of the tables where two are equal.
    [[nodiscard]] std::optional<board::LastUse> lastUse(const Json& name) const {
        std::optional<StateRow> latest;
        for (const Json& card : rowsOf(cards_, name, "ID")) {
            if (isTrue(cell(card, "Status"))) {
                takeUses(card, latest);
            }
        }
        return latest ? std::optional(latest->use) : std::nullopt;
    }

private:
    void takeUses(const Json& card, std::optional<StateRow>& latest) const {
        const std::vector<Json>& uses = rowsOf(locCards_, fieldOf(card, "ID"), "ID");
        for (const Json& locCard : uses) {
            takeLater(stateRow(locCard, formats_), latest);
        }
        if (uses.empty()) {
            takeLater(stateRow(Json::object(), formats_), latest);
        }
    }
    static void takeLater(StateRow row, std::optional<StateRow>& latest) {
        if (!latest || row.lastDate > latest->lastDate) {
            latest = std::move(row);
        }
    }

    RowsByKey cards_;
    RowsByKey locCards_;
    LocaleFormats formats_;
};

} // namespace

void applyInOut(const Json& input, Answer& answer) {
    const States states(input);
    board::Board board;
    Json items = Json::array();
    for (const Json& row : objects(input, "names")) {
        const Json key = fieldOf(row, "ID");
        const std::int32_t id = number32(key, "ID");
        const std::string name = textOrEmpty(fieldOf(row, "Name"), "Name");
        const board::HolderState state = board::stateOf(states.lastUse(key));
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
