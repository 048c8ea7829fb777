// Finding rows of a recordset in memory by a criterion written like a WHERE condition.
#pragma once

#include "companion/SiteSchema.h"
#include "companion/dialect/Expressions.h"
#include "companion/dialect/LiftedStatement.h"
#include "companion/dialect/Statements.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kintar::companion {

/// A criterion such as `Loc = 3 And Device = 7` over the columns of a recordset, with the meaning
/// that it would have in a statement: letter case ignored, texts compared with numbers as numbers,
/// Null equal to nothing. No sub-selects and no aggregates.
class RowCriterion {
public:
    /// Throws DatabaseError where the text is no condition or names a column that is not there.
    RowCriterion(std::string_view criterion, const std::vector<Column>& columns);
    RowCriterion(const RowCriterion&) = delete;
    RowCriterion& operator=(const RowCriterion&) = delete;

    /// Whether a row meets the criterion. `rows` has the columns given at construction.
    [[nodiscard]] bool matches(const Recordset& rows, std::size_t row) const;

private:
    std::string text_;
    dialect::LiftedStatement literals_; ///< views into `text_`
    TableDefinition table_;
    dialect::TableSource source_;
    dialect::ExpressionPtr condition_;
};

} // namespace kintar::companion
