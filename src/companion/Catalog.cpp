#include "companion/Catalog.h"

#include "companion/dialect/Keyword.h"

#include <algorithm>
#include <sstream>

namespace kintar::companion {

namespace {

std::string foldedName(std::string_view name) {
    std::string folded(name);
    std::ranges::transform(folded, folded.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return folded;
}

} // namespace

Catalog::Catalog(const std::vector<TableDefinition>& tables) {
    for (const TableDefinition& table : tables) {
        tables_.emplace(foldedName(table.name), table);
    }
}

const Catalog& Catalog::ofSite() {
    static const Catalog catalog(siteTables());
    return catalog;
}

const TableDefinition* Catalog::find(std::string_view table) const {
    const auto found = tables_.find(foldedName(table));
    return found == tables_.end() ? nullptr : &found->second;
}

std::optional<std::size_t> findColumn(const TableDefinition& table, std::string_view column) {
    const auto found = std::ranges::find_if(table.columns, [&](const ColumnDefinition& known) {
        return dialect::sameName(known.name, column);
    });
    if (found == table.columns.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - table.columns.begin());
}

std::vector<std::optional<std::size_t>> indexedColumns(const TableDefinition& table,
                                                       const IndexDefinition& index) {
    std::vector<std::optional<std::size_t>> columns;
    std::istringstream parts(index.columns);
    for (std::string part; std::getline(parts >> std::ws, part, ',');) {
        std::string name = part.substr(0, part.find(' '));
        std::erase(name, '"');
        columns.push_back(findColumn(table, name));
    }
    return columns;
}

} // namespace kintar::companion
