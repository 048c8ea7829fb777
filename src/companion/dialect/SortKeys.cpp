#include "companion/dialect/SortKeys.h"

#include "companion/SiteSchema.h"
#include "companion/dialect/Dispatch.h"

#include <algorithm>
#include <utility>

namespace kintar::companion::dialect {

namespace {

/// What the rows of a select must all meet, as far as it is a comparison for equality.
struct Equalities {
    std::vector<std::pair<const ColumnName*, const ColumnName*>> columns;
    std::vector<const TableSource*> given; ///< tables with a column that equals a literal
};

void collect(const Expression& condition, Equalities& found) {
    if (const auto* chain = asKind<LogicalChain>(condition, ExpressionKind::LogicalChain)) {
        if (chain->isAnd) {
            std::ranges::for_each(chain->terms, [&](const auto& term) { collect(*term, found); });
        }
        return;
    }
    const auto* test = asKind<Comparison>(condition, ExpressionKind::Comparison);
    if (test == nullptr || test->operation != ComparisonOperator::Equal) {
        return;
    }
    const ColumnName* left = asColumn(*test->left);
    const ColumnName* right = asColumn(*test->right);
    if (left != nullptr && right != nullptr) {
        found.columns.emplace_back(left, right);
    } else if (left != nullptr && asLiteral(*test->right) != nullptr) {
        found.given.push_back(left->source);
    }
}

/// The conditions of inner joins hold for every row; those inside of an outer join need not.
void collect(const FromItem& from, Equalities& found) {
    const auto* item = std::get_if<std::unique_ptr<Join>>(&from.item);
    if (item == nullptr || (*item)->kind != JoinKind::Inner) {
        return;
    }
    collect(*(*item)->condition, found);
    collect((*item)->left, found);
    collect((*item)->right, found);
}

bool isWholeNumberKey(const ColumnName& name) {
    if (name.source == nullptr || name.source->definition == nullptr) {
        return false;
    }
    const ColumnDefinition& column = name.source->definition->columns[name.column];
    return column.key != KeyKind::None && column.type == ColumnType::Integer;
}

/// The key that `column` must equal; null where there is none that is worth sorting by.
const ColumnName* keyFor(const ColumnName& column, const Equalities& equalities) {
    const auto given = [&](const TableSource* table) {
        return std::ranges::count(equalities.given, table) != 0;
    };
    const auto same = [&](const ColumnName& other) {
        return other.source == column.source && other.column == column.column;
    };
    for (const auto& [left, right] : equalities.columns) {
        const ColumnName* key = same(*left) ? right : same(*right) ? left : nullptr;
        if (key != nullptr && isWholeNumberKey(*key) && given(key->source) &&
            !given(column.source)) {
            return key;
        }
    }
    return nullptr;
}

/// The table's column that a sort term means; null where it means something else.
const ColumnName* sortColumn(const OrderTerm& term) {
    const ColumnName* column = asColumn(*term.expression);
    if (column != nullptr && column->selected != nullptr) {
        column = asColumn(*column->selected);
    }
    const bool wholeNumber = column != nullptr && column->type == ColumnType::Integer;
    return wholeNumber && column->source != nullptr ? column : nullptr;
}

} // namespace

void sortByKeys(Select& select) {
    if (select.orderBy.empty() || select.quantifier != Quantifier::All || select.hasAggregates) {
        return;
    }
    Equalities equalities;
    for (const FromItem& from : select.from) {
        collect(from, equalities);
    }
    if (select.where) {
        collect(*select.where, equalities);
    }
    for (OrderTerm& term : select.orderBy) {
        const ColumnName* column = sortColumn(term);
        const ColumnName* key = column != nullptr ? keyFor(*column, equalities) : nullptr;
        if (key != nullptr) {
            auto name =
                std::make_unique<ColumnName>(term.expression->position, key->qualifier, key->name);
            name->source = key->source;
            name->column = key->column;
            name->type = key->type;
            term.expression = std::move(name);
        }
    }
}

} // namespace kintar::companion::dialect
