#include "companion/dialect/SearchLeads.h"

#include "companion/Catalog.h"
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/Types.h"

#include <algorithm>
#include <functional>

namespace kintar::companion::dialect {

namespace {

/// Calls `use` with each term of a condition whose terms must all hold.
template <class E, class Use>
void forEachTerm(E* condition, const Use& use) {
    if (condition == nullptr) {
        return;
    }
    if (condition->kind == ExpressionKind::LogicalChain) {
        auto& chain =
            static_cast<std::conditional_t<std::is_const_v<E>, const LogicalChain, LogicalChain>&>(
                *condition);
        if (chain.isAnd) {
            for (const ExpressionPtr& term : chain.terms) {
                forEachTerm<E>(term.get(), use);
            }
            return;
        }
    }
    use(*condition);
}

/// How far a condition narrows down the values of a column.
enum class Narrowing : std::uint8_t { None, Values, Range };

struct NarrowedColumn {
    Narrowing narrowing = Narrowing::None;
    const ColumnName* column = nullptr;
    /// What an index holds is a value made from the column.
    bool computed = false;
};

NarrowedColumn narrowedBy(const Comparison& comparison) {
    const ColumnName* column = asColumn(*comparison.left);
    const Literal* literal = asLiteral(*comparison.right);
    if (comparison.operation != ComparisonOperator::Equal || column == nullptr ||
        literal == nullptr) {
        return {};
    }
    if (isText(column->type)) {
        return {Narrowing::Range, column, isNumber(literal->type)};
    }
    return {Narrowing::Values, column};
}

NarrowedColumn narrowedBy(const InListTest& test) {
    const ColumnName* column = asColumn(*test.operand);
    const bool plain = column != nullptr && !test.negated && !isText(column->type) &&
                       std::ranges::all_of(test.items, [](const ExpressionPtr& item) {
                           return asLiteral(*item) != nullptr && !isText(item->type);
                       });
    return plain ? NarrowedColumn{Narrowing::Values, column} : NarrowedColumn{};
}

NarrowedColumn narrowedBy(const Expression& condition) {
    if (const auto* comparison = asKind<Comparison>(condition, ExpressionKind::Comparison)) {
        return narrowedBy(*comparison);
    }
    if (const auto* list = asKind<InListTest>(condition, ExpressionKind::InListTest)) {
        return narrowedBy(*list);
    }
    const Literal* text = searchedText(condition);
    const auto* like = asKind<LikeTest>(condition, ExpressionKind::LikeTest);
    return text != nullptr && like != nullptr
               ? NarrowedColumn{Narrowing::Range, asColumn(*like->operand)}
               : NarrowedColumn{};
}

using Columns = std::vector<std::optional<std::size_t>>;

/// The conditions that an index over these columns serves: any number that give values, then one
/// that gives a range.
std::vector<const Expression*> servedBy(const Columns& columns,
                                        const std::vector<const Expression*>& conditions) {
    std::vector<const Expression*> served;
    for (const std::optional<std::size_t>& column : columns) {
        Narrowing narrowing = Narrowing::None;
        for (const Expression* condition : conditions) {
            const NarrowedColumn narrowed = narrowedBy(*condition);
            const bool fits = column ? !narrowed.computed && narrowed.column != nullptr &&
                                           narrowed.column->column == *column
                                     : narrowed.computed;
            if (fits && narrowed.narrowing > narrowing) {
                narrowing = narrowed.narrowing;
                served.push_back(condition);
            }
        }
        if (narrowing != Narrowing::Values) {
            break;
        }
    }
    return served;
}

/// Whether a condition has no sub-select and uses this table and no other.
bool concernsOnly(const Expression& condition, const TableSource& table) {
    const ColumnName* column = asColumn(condition);
    bool only =
        subSelectOf(condition) == nullptr && (column == nullptr || column->source == &table);
    forEachPart(condition,
                [&](const Expression& part) { only = only && concernsOnly(part, table); });
    return only;
}

std::vector<const Expression*> conditionsOn(const TableSource& table, const Expression* where) {
    std::vector<const Expression*> conditions;
    forEachTerm(where, [&](const Expression& term) {
        if (concernsOnly(term, table)) {
            conditions.push_back(&term);
        }
    });
    return conditions;
}

/// A lead for each range that an index serves; one without where there is none. Of several indexes
/// for one range, the one that serves most.
std::vector<SearchLead> leadsWith(const InSelectTest* test, const TableSource& table,
                                  const Expression* where) {
    const std::vector<const Expression*> conditions = conditionsOn(table, where);
    std::vector<SearchLead> leads{{test, &table, conditions, {}, nullptr}};
    for (const IndexDefinition& index : table.definition->indexes) {
        const auto served = servedBy(indexedColumns(*table.definition, index), conditions);
        const Expression* range =
            !served.empty() && narrowedBy(*served.back()).narrowing == Narrowing::Range
                ? served.back()
                : nullptr;
        auto known = std::ranges::find(leads, range, &SearchLead::range);
        if (known == leads.end()) {
            known = leads.insert(known, {test, &table, conditions, {}, range});
        }
        if (served.size() > known->served.size()) {
            known->served = served;
        }
    }
    if (leads.size() > 1) {
        leads.erase(leads.begin());
    }
    return leads;
}

/// The one table of a FROM clause, null where it has several.
const TableSource* onlyTable(const Select& select) {
    const auto* table = select.from.size() == 1
                            ? std::get_if<std::unique_ptr<TableSource>>(&select.from.front().item)
                            : nullptr;
    return table != nullptr ? table->get() : nullptr;
}

bool isKey(const ColumnName& column) {
    return column.source->definition->columns[column.column].key != KeyKind::None;
}

/// Whether an index finds the rows with a value of this column that meet the conditions.
bool isFoundByIndex(const ColumnName& column, const std::vector<const Expression*>& conditions) {
    const TableDefinition& table = *column.source->definition;
    return isKey(column) || std::ranges::any_of(table.indexes, [&](const IndexDefinition& index) {
               const Columns columns = indexedColumns(table, index);
               const auto at = std::ranges::find(columns, std::optional(column.column));
               const Columns before(columns.begin(), at);
               return at != columns.end() &&
                      std::ranges::all_of(before, [&](const std::optional<std::size_t>& other) {
                          return std::ranges::any_of(conditions, [&](const Expression* condition) {
                              const NarrowedColumn narrowed = narrowedBy(*condition);
                              return narrowed.narrowing == Narrowing::Values &&
                                     narrowed.column->column == other;
                          });
                      });
           });
}

bool canBeRowTest(const InSelectTest& test) {
    const ColumnName* operand = asColumn(*test.operand);
    const ColumnName* selected = asColumn(*test.select->items.front().expression);
    const TableSource* table = onlyTable(*test.select);
    return !test.negated && !test.select->hasAggregates && table != nullptr && operand != nullptr &&
           operand->source != nullptr && selected != nullptr && selected->source == table &&
           isWhole(operand->type) && isWhole(selected->type) &&
           isFoundByIndex(*selected, conditionsOn(*table, test.select->where.get()));
}

void markRowTests(Expression* where, const std::function<bool(const ColumnName&)>& wanted) {
    forEachTerm(where, [&](Expression& term) {
        if (term.kind != ExpressionKind::InSelectTest) {
            return;
        }
        auto& test = static_cast<InSelectTest&>(term);
        test.byRow = canBeRowTest(test) && wanted(*asColumn(*test.operand));
        if (test.byRow) {
            markRowTests(test.select->where.get(), [](const ColumnName&) { return true; });
        }
    });
}

} // namespace

const Literal* searchedText(const Expression& condition) {
    const auto* like = asKind<LikeTest>(condition, ExpressionKind::LikeTest);
    if (like == nullptr || like->negated || !isText(like->operand->type) ||
        asColumn(*like->operand) == nullptr) {
        return nullptr;
    }
    const Literal* text = asLiteral(*like->pattern);
    return text != nullptr && isText(text->type) ? text : nullptr;
}

void markRowTests(Select& select) {
    const TableSource* table = nullptr;
    markRowTests(select.where.get(), [&](const ColumnName& operand) {
        table = table == nullptr ? operand.source : table;
        return operand.source == table && isKey(operand);
    });
}

std::vector<SearchLead> leadsOf(const Statement& statement) {
    const auto* select = std::get_if<std::unique_ptr<Select>>(&statement.body);
    const Expression* where = select != nullptr ? (*select)->where.get() : nullptr;
    const TableSource* selectedFrom = nullptr;
    std::vector<SearchLead> inner;
    forEachTerm(where, [&](const Expression& term) {
        const auto* test = asKind<InSelectTest>(term, ExpressionKind::InSelectTest);
        if (test != nullptr && test->byRow) {
            selectedFrom = asColumn(*test->operand)->source;
            std::ranges::move(leadsWith(test, *onlyTable(*test->select), test->select->where.get()),
                              std::back_inserter(inner));
        } else if (selectedFrom == nullptr && searchedText(term) != nullptr) {
            selectedFrom = asColumn(*asKind<LikeTest>(term, term.kind)->operand)->source;
        }
    });
    if (selectedFrom == nullptr) {
        return {};
    }
    std::vector<SearchLead> leads = leadsWith(nullptr, *selectedFrom, where);
    std::ranges::move(inner, std::back_inserter(leads));
    return leads.size() > 1 ? std::move(leads) : std::vector<SearchLead>();
}

} // namespace kintar::companion::dialect
