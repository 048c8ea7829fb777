#include "companion/dialect/PostgresOutput.h"

#include "companion/SiteSchema.h"
#include "companion/dialect/Keyword.h"

#include <algorithm>
#include <utility>

namespace kintar::companion::dialect {

namespace {

/// The engine cuts longer names, and two cut names could be one.
constexpr std::size_t longestName = 60;

} // namespace

std::string postgresSchemaName(std::string_view name) {
    std::string small(name);
    std::ranges::transform(small, small.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return quotedName(small);
}

void PostgresOutput::introduce(const TableSource& table) {
    const auto isTaken = [&](const std::string& name) {
        return std::ranges::any_of(names(),
                                   [&](const auto& known) { return known.second == name; });
    };
    const std::string& shown = table.alias.empty() ? table.definition->name : table.alias;
    std::string name = shown.size() > longestName ? "\"t\"" : schemaName(shown);
    const std::string stem = name.substr(0, name.size() - 1);
    for (int count = 2; isTaken(name); ++count) {
        name = stem + "_" + std::to_string(count) + "\"";
    }
    introduceAs(table, schemaName(table.definition->name), std::move(name));
}

} // namespace kintar::companion::dialect
