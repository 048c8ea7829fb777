#include "companion/dialect/SqliteOutput.h"

#include "companion/Catalog.h"
#include "companion/dialect/Keyword.h"

#include <algorithm>
#include <utility>

namespace kintar::companion::dialect {

void SqliteOutput::introduce(const TableSource& table) {
    const auto isTaken = [&](const std::string& name) {
        return std::ranges::any_of(names(),
                                   [&](const auto& known) { return sameName(known.second, name); });
    };
    std::string name = quotedName(table.alias.empty() ? table.definition->name : table.alias);
    for (int count = 2; isTaken(name); ++count) {
        name = quotedName(table.shownName() + "_" + std::to_string(count));
    }
    introduceAs(table, schemaName(table.definition->name), std::move(name));
}

} // namespace kintar::companion::dialect
