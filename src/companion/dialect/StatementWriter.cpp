#include "companion/dialect/StatementWriter.h"

#include "companion/Catalog.h"
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/Types.h"

#include <algorithm>
#include <utility>

namespace kintar::companion::dialect {

namespace {

bool selectsText(const Select& select) {
    return std::ranges::any_of(select.columns,
                               [](const Column& column) { return isText(column.type); });
}

bool isGroupedBy(const Select& select, const Expression& expression) {
    const ColumnName* column = asColumn(expression);
    return column != nullptr &&
           std::ranges::any_of(select.groupBy, [&](const ExpressionPtr& group) {
               const ColumnName* other = asColumn(*group);
               return other != nullptr && other->source == column->source &&
                      other->column == column->column;
           });
}

void collectTables(const Expression& expression, std::vector<const TableSource*>& tables) {
    const ColumnName* column = asColumn(expression);
    if (column != nullptr && column->source != nullptr &&
        std::ranges::count(tables, column->source) == 0) {
        tables.push_back(column->source);
    }
    forEachPart(expression, [&](const Expression& part) { collectTables(part, tables); });
}

} // namespace

bool groupsTexts(const Select& select) {
    return select.quantifier == Quantifier::Distinct && selectsText(select) &&
           !select.hasAggregates;
}

std::vector<const TableSource*> tablesThatTellRows(const Select& select) {
    if (select.quantifier != Quantifier::DistinctRow || select.hasAggregates) {
        return {};
    }
    std::vector<const TableSource*> used;
    for (const SelectItem& item : select.items) {
        collectTables(*item.expression, used);
    }
    std::vector<const TableSource*> own;
    std::size_t all = 0;
    for (const FromItem& from : select.from) {
        forEachTable(from, [&](const TableSource& table) {
            ++all;
            if (std::ranges::count(used, &table) != 0) {
                own.push_back(&table);
            }
        });
    }
    return own.size() == all ? std::vector<const TableSource*>() : own;
}

Translation StatementWriter::write(const Statement& statement) {
    std::vector<Column> columns;
    if (const auto* query = std::get_if<std::unique_ptr<Select>>(&statement.body)) {
        select(**query);
        columns = (*query)->columns;
    } else if (const auto* added = std::get_if<Insert>(&statement.body)) {
        insert(*added);
    } else if (const auto* changed = std::get_if<Update>(&statement.body)) {
        update(*changed);
    } else {
        deletion(std::get<Delete>(statement.body));
    }
    return out_.take(std::move(columns));
}

void StatementWriter::plainSelect(const Select& select, Projection projection, bool groups) {
    const std::string tables = fromClause(select);
    out_ << (select.quantifier == Quantifier::Distinct && !groups ? "SELECT DISTINCT " : "SELECT ");
    list(select.items, [&](const SelectItem& item) {
        // Of texts that are one group, every engine shows the same: the first by its bytes.
        const bool representative = projection == Projection::Plain &&
                                    isText(item.expression->type) &&
                                    (groups || isGroupedBy(select, *item.expression));
        out_ << (representative ? "min(" : "");
        expressions_.projected(*item.expression, projection);
        if (representative) {
            out_ << orderOfRepresentative() << ")";
        }
    });
    out_ << tables;
    where(select.where, " WHERE ");
    if (groups) {
        out_ << " GROUP BY ";
        list(select.items,
             [&](const SelectItem& item) { expressions_.groupKey(*item.expression); });
    } else {
        groupBy(select);
    }
}

std::string StatementWriter::fromClause(const Select& select) {
    const std::size_t start = out_.size();
    out_ << " FROM ";
    list(select.from, [&](const FromItem& item) { from(item); });
    return out_.cut(start);
}

void StatementWriter::from(const FromItem& item) {
    if (const auto* table = std::get_if<std::unique_ptr<TableSource>>(&item.item)) {
        out_.introduce(**table);
        return;
    }
    const Join& join = *std::get<std::unique_ptr<Join>>(item.item);
    from(join.left);
    out_ << (join.kind == JoinKind::Inner ? " JOIN " : " LEFT JOIN ");
    const bool nested = std::holds_alternative<std::unique_ptr<Join>>(join.right.item);
    out_ << (nested ? "(" : "");
    from(join.right);
    out_ << (nested ? ")" : "") << " ON ";
    expressions_.condition(*join.condition);
}

void StatementWriter::where(const ExpressionPtr& condition, std::string_view keyword) {
    if (condition) {
        out_ << keyword;
        expressions_.condition(*condition);
    }
}

void StatementWriter::groupBy(const Select& select) {
    if (!select.groupBy.empty()) {
        out_ << " GROUP BY ";
        list(select.groupBy, [&](const ExpressionPtr& group) { expressions_.groupKey(*group); });
    }
    where(select.having, " HAVING ");
}

void StatementWriter::orderBy(const Select& select) {
    if (select.orderBy.empty()) {
        return;
    }
    out_ << " ORDER BY ";
    list(select.orderBy, [&](const OrderTerm& term) {
        expressions_.sortKey(*term.expression);
        out_ << direction(term);
    });
}

void StatementWriter::insert(const Insert& insert) {
    out_ << "INSERT INTO ";
    out_.introduce(*insert.table);
    out_ << " (";
    list(insert.columns, [&](const auto& column) {
        out_ << out_.schemaName(insert.table->definition->columns[column->column].name);
    });
    out_ << ") VALUES (";
    std::size_t at = 0;
    list(insert.values, [&](const ExpressionPtr& value) {
        expressions_.assigned(*value, insert.columns[at++]->type);
    });
    out_ << ")";
}

void StatementWriter::update(const Update& update) {
    out_ << "UPDATE ";
    out_.introduce(*update.table);
    out_ << " SET ";
    list(update.assignments, [&](const Assignment& assignment) {
        const auto& columns = update.table->definition->columns;
        out_ << out_.schemaName(columns[assignment.column->column].name) << " = ";
        expressions_.assigned(*assignment.value, assignment.column->type);
    });
    where(update.where, " WHERE ");
}

void StatementWriter::deletion(const Delete& deletion) {
    out_ << "DELETE FROM ";
    out_.introduce(*deletion.table);
    where(deletion.where, " WHERE ");
}

} // namespace kintar::companion::dialect
