// The rows of a site's table in an order that every engine gives alike.
#pragma once

#include "companion/SiteSchema.h"
#include "tools/site/SiteDatabase.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kintar::site {

/// A row, every column's value as text: whole numbers in digits, date-times as
/// `2012-03-14 17:05:00`.
using RowTexts = std::vector<std::optional<std::string>>;

/// Goes through a table by its key, or by all of its columns where it has none. On a server it has
/// to be used inside a transaction; a table is never held in memory.
class TableReader {
public:
    TableReader(SiteDatabase& database, const companion::TableDefinition& table);

    /// The next row; null behind the last, valid until the next call. Throws SiteError at a value
    /// that its column should not hold, naming table, row and column.
    const RowTexts* next();
    /// What tells the row of the last call from others: `ID 17`, or its number in the order.
    [[nodiscard]] std::string place() const;

private:
    bool fetch();
    void check(std::size_t column) const;

    SiteDatabase& database_;
    const companion::TableDefinition& table_;
    std::unique_ptr<SiteStatement> rows_;
    RowTexts row_;
    long long number_ = 0;
    bool ended_ = false;
};

} // namespace kintar::site
