#include "companion/dialect/Rewriter.h"

#include "companion/dialect/Dispatch.h"
#include "companion/dialect/SearchLeads.h"
#include "companion/dialect/SortKeys.h"
#include "companion/dialect/Types.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kintar::companion::dialect {

namespace {

using Sources = std::vector<const TableSource*>;

bool usesAny(const Select& select, const Sources& sources);

bool usesAny(const Expression& expression, const Sources& sources) {
    bool uses = false;
    if (const ColumnName* column = asColumn(expression)) {
        uses = std::ranges::count(sources, column->source) != 0;
    }
    forEachPart(expression, [&](const Expression& part) { uses = uses || usesAny(part, sources); });
    const Select* select = subSelectOf(expression);
    return uses || (select != nullptr && usesAny(*select, sources));
}

bool usesAny(const FromItem& from, const Sources& sources) {
    const auto* join = std::get_if<std::unique_ptr<Join>>(&from.item);
    return join != nullptr && (usesAny(*(*join)->condition, sources) ||
                               usesAny((*join)->left, sources) || usesAny((*join)->right, sources));
}

bool usesAny(const Select& select, const Sources& sources) {
    const auto expressionUses = [&](const ExpressionPtr& expression) {
        return expression && usesAny(*expression, sources);
    };
    return expressionUses(select.where) || expressionUses(select.having) ||
           std::ranges::any_of(select.groupBy, expressionUses) ||
           std::ranges::any_of(select.items,
                               [&](const SelectItem& i) { return expressionUses(i.expression); }) ||
           std::ranges::any_of(select.orderBy,
                               [&](const OrderTerm& t) { return expressionUses(t.expression); }) ||
           std::ranges::any_of(select.from,
                               [&](const FromItem& from) { return usesAny(from, sources); });
}

Sources tablesOf(const Select& select) {
    Sources tables;
    for (const FromItem& from : select.from) {
        forEachTable(from, [&](const TableSource& table) { tables.push_back(&table); });
    }
    return tables;
}

void turnRightJoins(FromItem& from) {
    auto* found = std::get_if<std::unique_ptr<Join>>(&from.item);
    if (found == nullptr) {
        return;
    }
    Join& join = **found;
    turnRightJoins(join.left);
    turnRightJoins(join.right);
    if (join.kind == JoinKind::Right) {
        join.kind = JoinKind::Left;
        std::swap(join.left, join.right);
    }
}

/// The terms of a condition that must all hold.
std::vector<ExpressionPtr> takeTerms(ExpressionPtr condition) {
    std::vector<ExpressionPtr> terms;
    if (condition && condition->kind == ExpressionKind::LogicalChain &&
        static_cast<LogicalChain&>(*condition).isAnd) {
        for (ExpressionPtr& term : static_cast<LogicalChain&>(*condition).terms) {
            std::ranges::move(takeTerms(std::move(term)), std::back_inserter(terms));
        }
    } else if (condition) {
        terms.push_back(std::move(condition));
    }
    return terms;
}

ExpressionPtr joinTerms(std::vector<ExpressionPtr> terms) {
    if (terms.size() < 2) {
        return terms.empty() ? nullptr : std::move(terms.front());
    }
    const std::size_t position = terms.front()->position;
    auto chain = std::make_unique<LogicalChain>(position, true, std::move(terms));
    chain->type = ColumnType::YesNo;
    return chain;
}

bool sameSourceAndColumn(const ColumnName& a, const ColumnName& b) {
    return a.source != nullptr && a.source == b.source && a.column == b.column;
}

/// Whether a value of one column means the same in the other.
bool sameKindOfColumn(const ColumnName& a, const ColumnName& b) {
    const bool same = a.source != nullptr && b.source != nullptr &&
                      a.source->definition == b.source->definition && a.column == b.column;
    return same || (isWhole(a.type) && isWhole(b.type));
}

ExpressionPtr copyOf(const ColumnName& column) {
    auto copy = std::make_unique<ColumnName>(column.position, column.qualifier, column.name);
    copy->source = column.source;
    copy->column = column.column;
    copy->type = column.type;
    return copy;
}

/// A positive test against a sub-select whose rows correspond one by one to rows of its tables.
InSelectTest* asPlainInSelect(Expression& expression) {
    if (expression.kind != ExpressionKind::InSelectTest) {
        return nullptr;
    }
    auto& test = static_cast<InSelectTest&>(expression);
    return test.negated || test.select->hasAggregates ? nullptr : &test;
}

/// Moves out of `test` the terms that need not be inside, giving them to `outside`.
void hoist(InSelectTest& test, std::vector<ExpressionPtr>& outside) {
    const Sources inner = tablesOf(*test.select);
    const ColumnName* operand = asColumn(*test.operand);
    const ColumnName* selected = asColumn(*test.select->items.front().expression);
    const bool sameColumn =
        operand != nullptr && selected != nullptr && sameKindOfColumn(*operand, *selected);
    std::vector<ExpressionPtr> staying;
    for (ExpressionPtr& term : takeTerms(std::move(test.select->where))) {
        if (!usesAny(*term, inner)) {
            outside.push_back(std::move(term));
            continue;
        }
        InSelectTest* nested = asPlainInSelect(*term);
        const ColumnName* tested = nested != nullptr ? asColumn(*nested->operand) : nullptr;
        if (sameColumn && tested != nullptr && sameSourceAndColumn(*tested, *selected) &&
            !usesAny(*nested->select, inner)) {
            nested->operand = copyOf(*operand);
            outside.push_back(std::move(term));
            continue;
        }
        staying.push_back(std::move(term));
    }
    test.select->where = joinTerms(std::move(staying));
}

void rewriteSelect(Select& select);

void rewriteSubSelects(Expression& expression) {
    forEachPart(expression, [](Expression& part) { rewriteSubSelects(part); });
    if (Select* select = subSelectOf(expression)) {
        rewriteSelect(*select);
    }
}

void rewriteWhere(ExpressionPtr& where) {
    if (!where) {
        return;
    }
    rewriteSubSelects(*where);
    std::vector<ExpressionPtr> terms;
    for (ExpressionPtr& term : takeTerms(std::move(where))) {
        std::vector<ExpressionPtr> outside;
        if (InSelectTest* test = asPlainInSelect(*term)) {
            hoist(*test, outside);
        }
        terms.push_back(std::move(term));
        std::ranges::move(outside, std::back_inserter(terms));
    }
    where = joinTerms(std::move(terms));
}

void rewriteSelect(Select& select) {
    for (FromItem& from : select.from) {
        turnRightJoins(from);
    }
    rewriteWhere(select.where);
    if (select.having) {
        rewriteSubSelects(*select.having);
    }
    for (SelectItem& item : select.items) {
        rewriteSubSelects(*item.expression);
    }
    sortByKeys(select);
}

} // namespace

void rewrite(Statement& statement) {
    if (auto* select = std::get_if<std::unique_ptr<Select>>(&statement.body)) {
        rewriteSelect(**select);
        markRowTests(**select);
    } else if (auto* update = std::get_if<Update>(&statement.body)) {
        rewriteWhere(update->where);
    } else if (auto* deletion = std::get_if<Delete>(&statement.body)) {
        rewriteWhere(deletion->where);
    }
}

} // namespace kintar::companion::dialect
