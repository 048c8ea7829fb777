// What searches have to find, worked out row by row in memory: no statement, no engine, and nothing
// of the companion.
#pragma once

#include "search/agreement/RandomSite.h"

#include <optional>
#include <string>
#include <vector>

namespace kintar::agreement {

/// A row of a name list, and where it stands in the list: rows of one place may stand in any order.
struct Row {
    std::string place;
    std::string values;
    auto operator<=>(const Row&) const = default;
};

/// The columns of a row as one text.
std::string valuesOf(const std::string& id, const std::string& name, const MaybeText& visitor,
                     const MaybeText& trace, const MaybeText& company);
/// Where a name stands in the order of names.
std::string placeOf(const Person& person);

using Restriction = std::optional<std::vector<int>>;

/// In the order of the list.
std::vector<Row> namesFound(const People& people, const search::NameCriteria& criteria,
                            const Restriction& restriction);
std::vector<Row> selectionFound(const People& people, const selection::SelectionCriteria& criteria,
                                const Restriction& restriction);

/// Whether a text is like a pattern, letter case ignored; Null is like nothing.
bool isLike(const MaybeText& text, const std::string& pattern);

/// A number written plainly, so that equal numbers are equal texts; nothing where it is none.
std::optional<std::string> plainNumber(const std::string& text);

} // namespace kintar::agreement
