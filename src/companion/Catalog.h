// The tables that statements are checked against.
#pragma once

#include "companion/SiteSchema.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion {

/// A set of tables, found by name without regard to case. Addresses of its tables stay as they are
/// for its life.
class Catalog {
public:
    explicit Catalog(const std::vector<TableDefinition>& tables);

    /// The catalog of a site as `kintar-site create` makes it.
    static const Catalog& ofSite();

    /// Null where there is no such table.
    [[nodiscard]] const TableDefinition* find(std::string_view table) const;

private:
    std::map<std::string, TableDefinition> tables_; ///< by folded name
};

/// The position of a column of a table, letter case ignored.
std::optional<std::size_t> findColumn(const TableDefinition& table, std::string_view column);

/// The columns of an index, in order; none for what is no plain column.
std::vector<std::optional<std::size_t>> indexedColumns(const TableDefinition& table,
                                                       const IndexDefinition& index);

} // namespace kintar::companion
