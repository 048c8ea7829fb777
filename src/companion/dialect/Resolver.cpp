#include "companion/dialect/Resolver.h"

#include "companion/dialect/Dispatch.h"
#include "companion/dialect/Keyword.h"
#include "companion/dialect/Types.h"

#include <algorithm>
#include <map>

namespace kintar::companion::dialect {

namespace {

std::string shownColumn(const ColumnName& column) {
    return column.qualifier.empty() ? column.name : column.qualifier + "." + column.name;
}

std::string printed(const Expression& expression) {
    std::string text;
    expression.print(text);
    return text;
}

bool hasAggregate(const Expression& expression) {
    bool found = expression.kind == ExpressionKind::Aggregate;
    forEachPart(expression, [&](const Expression& part) { found = found || hasAggregate(part); });
    return found;
}

bool hasColumn(const Expression& expression) {
    bool found = expression.kind == ExpressionKind::ColumnName ||
                 expression.kind == ExpressionKind::Aggregate;
    forEachPart(expression, [&](const Expression& part) { found = found || hasColumn(part); });
    return found;
}

} // namespace

void Resolver::fail(ErrorKind kind, std::size_t position, const std::string& text) const {
    throw DatabaseError::inStatement(kind, statement_, position, text);
}

void Resolver::resolve(Statement& statement) {
    if (auto* select = std::get_if<std::unique_ptr<Select>>(&statement.body)) {
        resolveSelect(**select, nullptr);
    } else if (auto* insert = std::get_if<Insert>(&statement.body)) {
        resolveInsert(*insert);
    } else if (auto* update = std::get_if<Update>(&statement.body)) {
        resolveUpdate(*update);
    } else {
        resolveDelete(std::get<Delete>(statement.body));
    }
}

void Resolver::resolveCondition(Expression& condition, const TableSource& table) {
    const Scope scope{nullptr, {&table}, nullptr};
    resolveTest(condition, scope, Aggregates::Forbidden);
}

void Resolver::resolveSelect(Select& select, const Scope* outer) {
    Scope scope{outer, {}, nullptr};
    for (FromItem& from : select.from) {
        const auto tables = resolveFrom(from, outer);
        scope.tables.insert(scope.tables.end(), tables.begin(), tables.end());
    }
    checkDistinctNames(scope.tables);
    if (select.where) {
        resolveTest(*select.where, scope, Aggregates::Forbidden);
    }
    for (const ExpressionPtr& group : select.groupBy) {
        resolveExpression(*group, scope, Aggregates::Forbidden);
    }
    expandStars(select, scope);
    for (SelectItem& item : select.items) {
        resolveExpression(*item.expression, scope, Aggregates::Allowed);
    }
    if (select.having) {
        resolveTest(*select.having, scope, Aggregates::Allowed);
    }
    nameColumns(select);
    resolveOrder(select, scope);
    checkGroups(select);
}

void Resolver::resolveOrder(Select& select, const Scope& scope) {
    Scope withAliases = scope;
    withAliases.aliases = &select;
    for (const OrderTerm& term : select.orderBy) {
        if (!hasColumn(*term.expression)) {
            fail(ErrorKind::Syntax, term.expression->position, "ORDER BY takes columns");
        }
        resolveExpression(*term.expression, withAliases, Aggregates::Allowed);
        const bool isSelected = std::ranges::any_of(select.items, [&](const SelectItem& item) {
            const auto* column = asColumn(*term.expression);
            return (column != nullptr && column->selected == item.expression.get()) ||
                   printed(*item.expression) == printed(*term.expression) ||
                   (column != nullptr && asColumn(*item.expression) != nullptr &&
                    asColumn(*item.expression)->source == column->source &&
                    asColumn(*item.expression)->column == column->column);
        });
        if (select.quantifier == Quantifier::Distinct && !isSelected) {
            fail(ErrorKind::Syntax, term.expression->position,
                 "ORDER BY of a SELECT DISTINCT takes what is selected");
        }
    }
}

void Resolver::resolveInsert(Insert& insert) {
    bindTable(*insert.table);
    const Scope nothing;
    for (std::size_t at = 0; at < insert.columns.size(); ++at) {
        const ColumnDefinition& column = bindColumnToWrite(*insert.columns[at], *insert.table);
        resolveExpression(*insert.values[at], nothing, Aggregates::Forbidden);
        checkAssignable(column, *insert.values[at]);
        const auto earlier = insert.columns.begin() + static_cast<std::ptrdiff_t>(at);
        if (std::any_of(insert.columns.begin(), earlier, [&](const auto& other) {
                return other->column == insert.columns[at]->column;
            })) {
            fail(ErrorKind::Syntax, insert.columns[at]->position, "a column stands twice");
        }
    }
}

void Resolver::resolveUpdate(Update& update) {
    bindTable(*update.table);
    const Scope scope{nullptr, {update.table.get()}, nullptr};
    std::vector<std::size_t> written;
    for (Assignment& assignment : update.assignments) {
        const ColumnDefinition& column = bindColumnToWrite(*assignment.column, *update.table);
        resolveExpression(*assignment.value, scope, Aggregates::Forbidden);
        checkAssignable(column, *assignment.value);
        if (std::ranges::count(written, assignment.column->column) != 0) {
            fail(ErrorKind::Syntax, assignment.column->position, "a column stands twice");
        }
        written.push_back(assignment.column->column);
    }
    if (update.where) {
        resolveTest(*update.where, scope, Aggregates::Forbidden);
    }
}

void Resolver::resolveDelete(Delete& deletion) {
    bindTable(*deletion.table);
    const Scope scope{nullptr, {deletion.table.get()}, nullptr};
    if (deletion.where) {
        resolveTest(*deletion.where, scope, Aggregates::Forbidden);
    }
}

void Resolver::bindTable(TableSource& table) {
    table.definition = catalog_.find(table.table);
    if (table.definition == nullptr) {
        fail(ErrorKind::UnknownName, table.position, "unknown table " + table.table);
    }
}

std::vector<const TableSource*> Resolver::resolveFrom(FromItem& from, const Scope* outer) {
    if (auto* table = std::get_if<std::unique_ptr<TableSource>>(&from.item)) {
        bindTable(**table);
        return {table->get()};
    }
    Join& join = *std::get<std::unique_ptr<Join>>(from.item);
    std::vector<const TableSource*> tables = resolveFrom(join.left, outer);
    const auto right = resolveFrom(join.right, outer);
    tables.insert(tables.end(), right.begin(), right.end());
    // A join's condition sees the tables of that join, not those joined later.
    const Scope scope{outer, tables, nullptr};
    resolveTest(*join.condition, scope, Aggregates::Forbidden);
    return tables;
}

void Resolver::checkDistinctNames(const std::vector<const TableSource*>& tables) const {
    for (std::size_t at = 0; at < tables.size(); ++at) {
        for (std::size_t earlier = 0; earlier < at; ++earlier) {
            if (sameName(tables[at]->shownName(), tables[earlier]->shownName())) {
                fail(ErrorKind::UnknownName, tables[at]->position,
                     "the table " + tables[at]->shownName() + " stands twice; give one an alias");
            }
        }
    }
}

std::vector<SelectItem> Resolver::columnsOf(const SelectItem& star, const Scope& scope) {
    std::vector<SelectItem> columns;
    for (const TableSource* table : scope.tables) {
        if (!star.starQualifier.empty() && !sameName(star.starQualifier, table->shownName())) {
            continue;
        }
        for (const ColumnDefinition& column : table->definition->columns) {
            SelectItem item;
            item.position = star.position;
            item.expression =
                std::make_unique<ColumnName>(star.position, table->shownName(), column.name);
            columns.push_back(std::move(item));
        }
    }
    if (columns.empty()) {
        fail(ErrorKind::UnknownName, star.position, "unknown table " + star.starQualifier);
    }
    return columns;
}

void Resolver::expandStars(Select& select, const Scope& scope) {
    std::vector<SelectItem> items;
    for (SelectItem& item : select.items) {
        if (item.expression) {
            items.push_back(std::move(item));
            continue;
        }
        std::ranges::move(columnsOf(item, scope), std::back_inserter(items));
    }
    select.items = std::move(items);
}

void Resolver::checkGroups(Select& select) const {
    bool aggregates = !select.groupBy.empty() || select.having != nullptr;
    for (const SelectItem& item : select.items) {
        aggregates = aggregates || hasAggregate(*item.expression);
    }
    for (const OrderTerm& term : select.orderBy) {
        aggregates = aggregates || hasAggregate(*term.expression);
    }
    select.hasAggregates = aggregates;
    if (!aggregates) {
        return;
    }
    for (const SelectItem& item : select.items) {
        checkGrouped(select, *item.expression);
    }
    if (select.having) {
        checkGrouped(select, *select.having);
    }
    for (const OrderTerm& term : select.orderBy) {
        checkGrouped(select, *term.expression);
    }
}

void Resolver::checkGrouped(const Select& select, const Expression& expression) const {
    const auto isGroup = [&](const ExpressionPtr& group) {
        const ColumnName* a = asColumn(*group);
        const ColumnName* b = asColumn(expression);
        const bool sameColumn = a != nullptr && b != nullptr && a->source != nullptr &&
                                a->source == b->source && a->column == b->column;
        return sameColumn || printed(*group) == printed(expression);
    };
    if (expression.kind == ExpressionKind::Aggregate ||
        std::ranges::any_of(select.groupBy, isGroup)) {
        return;
    }
    if (const ColumnName* column = asColumn(expression)) {
        bool ownColumn = false;
        for (const FromItem& from : select.from) {
            forEachTable(from, [&](const TableSource& table) {
                ownColumn = ownColumn || &table == column->source;
            });
        }
        if (ownColumn) {
            fail(ErrorKind::Syntax, expression.position,
                 "the column " + shownColumn(*column) + " is neither grouped by nor counted");
        }
    }
    forEachPart(expression, [&](const Expression& part) { checkGrouped(select, part); });
}

void Resolver::nameColumns(Select& select) const {
    select.columns.clear();
    int unnamed = 1000;
    for (const SelectItem& item : select.items) {
        const ColumnName* column = asColumn(*item.expression);
        std::string name = item.alias;
        if (name.empty()) {
            name = column != nullptr && column->source != nullptr
                       ? column->source->definition->columns[column->column].name
                       : "Expr" + std::to_string(unnamed++);
        }
        select.columns.push_back({std::move(name), item.expression->type});
    }
    const std::vector<Column> names = select.columns;
    std::map<std::string_view, std::size_t, NameOrder> uses;
    for (const Column& column : names) {
        ++uses[column.name];
    }
    for (std::size_t at = 0; at < select.columns.size(); ++at) {
        const ColumnName* column = asColumn(*select.items[at].expression);
        if (uses.at(names[at].name) > 1 && column != nullptr && select.items[at].alias.empty()) {
            select.columns[at].name = column->source->shownName() + "." + names[at].name;
        }
    }
}

const ColumnDefinition& Resolver::bindColumnToWrite(ColumnName& column,
                                                    const TableSource& table) const {
    const auto found = findColumn(*table.definition, column.name);
    if (!found || (!column.qualifier.empty() && !sameName(column.qualifier, table.table))) {
        fail(ErrorKind::UnknownName, column.position, "unknown column " + shownColumn(column));
    }
    column.source = &table;
    column.column = *found;
    column.type = table.definition->columns[*found].type;
    return table.definition->columns[*found];
}

void Resolver::checkAssignable(const ColumnDefinition& column, const Expression& value) const {
    const TypeClass to = classOf(column.type);
    const TypeClass from = classOf(value.type);
    const bool good = from == TypeClass::Unknown || to == from || to == TypeClass::Unknown ||
                      (to == TypeClass::Text && from == TypeClass::Number);
    if (!good) {
        fail(ErrorKind::TypeMismatch, value.position,
             "the column " + column.name + " cannot hold a value of this type");
    }
}

void Resolver::resolveTest(Expression& condition, const Scope& scope, Aggregates aggregates) {
    resolveExpression(condition, scope, aggregates);
    needCondition(condition);
}

void Resolver::resolveExpression(Expression& expression, const Scope& scope,
                                 Aggregates aggregates) {
    if (expression.kind == ExpressionKind::Aggregate) {
        if (aggregates != Aggregates::Allowed) {
            fail(ErrorKind::Syntax, expression.position, "no aggregate can stand here");
        }
        aggregates = Aggregates::Inside;
    }
    forEachPart(expression, [&](Expression& part) { resolveExpression(part, scope, aggregates); });
    if (Select* select = subSelectOf(expression)) {
        resolveSelect(*select, &scope);
    }
    if (expression.kind == ExpressionKind::ColumnName) {
        bindColumn(static_cast<ColumnName&>(expression), scope);
    }
    expression.type = dispatch(std::as_const(expression), [&](const auto& e) { return typeOf(e); });
}

bool Resolver::bindAlias(ColumnName& column, const Scope& scope) const {
    if (scope.aliases == nullptr || !column.qualifier.empty()) {
        return false;
    }
    for (const SelectItem& item : scope.aliases->items) {
        if (!item.alias.empty() && sameName(item.alias, column.name)) {
            column.selected = item.expression.get();
            return true;
        }
    }
    return false;
}

void Resolver::bindColumn(ColumnName& column, const Scope& scope) const {
    if (bindAlias(column, scope)) {
        return;
    }
    for (const Scope* level = &scope; level != nullptr; level = level->outer) {
        std::string owners;
        for (const TableSource* table : level->tables) {
            if (!column.qualifier.empty() && !sameName(column.qualifier, table->shownName())) {
                continue;
            }
            if (const auto found = findColumn(*table->definition, column.name)) {
                owners += (owners.empty() ? "" : ", ") + table->shownName();
                if (column.source != nullptr) {
                    fail(ErrorKind::UnknownName, column.position,
                         "the column " + column.name + " could be of several tables: " + owners);
                }
                column.source = table;
                column.column = *found;
            }
        }
        if (column.source != nullptr) {
            return;
        }
    }
    fail(ErrorKind::UnknownName, column.position, "unknown column " + shownColumn(column));
}

} // namespace kintar::companion::dialect
