#include "companion/dialect/PostgresWriter.h"

#include "base/Number.h"
#include "base/Unicode.h"
#include "companion/SiteSchema.h"
#include "companion/dialect/Decimal.h"
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/LikePattern.h"
#include "companion/dialect/PostgresExpressionWriter.h"
#include "companion/dialect/PostgresPattern.h"
#include "companion/dialect/TextRanges.h"
#include "companion/dialect/Types.h"

#include <algorithm>

namespace kintar::companion::dialect {

namespace {

using Projection = PostgresExpressionWriter::Projection;

/// Writes one statement.
class StatementWriter {
public:
    explicit StatementWriter(const std::vector<LiteralValue>& values)
        : out_(values), expressions_(out_, [this](const Select& inner, Projection projection) {
              subSelect(inner, projection);
          }) {}

    void select(const Select& select);
    void insert(const Insert& insert);
    void update(const Update& update);
    void deletion(const Delete& deletion);
    Translation take(std::vector<Column> columns) { return out_.take(std::move(columns)); }

private:
    void subSelect(const Select& select, Projection projection);
    void plainSelect(const Select& select, Projection projection, bool groups);
    void distinctRows(const Select& select, const std::vector<const TableSource*>& tables);
    std::string fromClause(const Select& select);
    void from(const FromItem& item);
    void where(const ExpressionPtr& condition, std::string_view keyword);
    void groupBy(const Select& select);
    void orderBy(const Select& select);
    void direction(const OrderTerm& term);
    template <class List, class Write>
    void list(const List& items, Write write);

    PostgresOutput out_;
    PostgresExpressionWriter expressions_;
};

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

/// The tables of the FROM clause that something is selected from, where that are not all of them:
/// with something from every table selected, every row is a combination of its own.
std::vector<const TableSource*> tablesThatTellRows(const Select& select) {
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

template <class List, class Write>
void StatementWriter::list(const List& items, Write write) {
    bool first = true;
    for (const auto& item : items) {
        out_ << (first ? "" : ", ");
        first = false;
        write(item);
    }
}

void StatementWriter::select(const Select& select) {
    if (select.quantifier == Quantifier::DistinctRow && !select.hasAggregates) {
        const auto tables = tablesThatTellRows(select);
        if (!tables.empty()) {
            distinctRows(select, tables);
            return;
        }
    }
    // Texts that differ in case only are one: DISTINCT becomes a grouping by what tells them apart.
    const bool groups =
        select.quantifier == Quantifier::Distinct && selectsText(select) && !select.hasAggregates;
    plainSelect(select, Projection::Plain, groups);
    orderBy(select);
}

/// A sub-select tells what there is; how often and in which order makes no difference to it.
void StatementWriter::subSelect(const Select& select, Projection projection) {
    plainSelect(select, projection, false);
}

/// Tables get their names before columns are written: the FROM clause is written first and moved.
std::string StatementWriter::fromClause(const Select& select) {
    const std::size_t hole = out_.size();
    out_ << " FROM ";
    list(select.from, [&](const FromItem& item) { from(item); });
    return out_.cut(hole);
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
        out_ << (representative ? " COLLATE \"C\")" : "");
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

/// One row for each combination of records of the selected tables, which `ctid` tells apart. What
/// it is ordered by need not be selected, so it goes along and is dropped again.
void StatementWriter::distinctRows(const Select& select,
                                   const std::vector<const TableSource*>& tables) {
    const std::string clause = fromClause(select);
    std::size_t number = 0;
    out_ << "SELECT ";
    list(select.items, [&](const SelectItem&) { out_ << "d.c" << std::to_string(++number); });
    out_ << " FROM (SELECT DISTINCT ON (";
    list(tables, [&](const TableSource* table) { out_ << out_.nameOf(*table) << ".ctid"; });
    out_ << ") ";
    number = 0;
    list(select.items, [&](const SelectItem& item) {
        expressions_.value(*item.expression);
        out_ << " AS c" << std::to_string(++number);
    });
    number = 0;
    for (const OrderTerm& term : select.orderBy) {
        out_ << ", ";
        expressions_.sortKey(*term.expression);
        out_ << " AS s" << std::to_string(++number);
    }
    out_ << clause;
    where(select.where, " WHERE ");
    out_ << ") AS d";
    number = 0;
    out_ << (select.orderBy.empty() ? "" : " ORDER BY ");
    list(select.orderBy, [&](const OrderTerm& term) {
        out_ << "d.s" << std::to_string(++number);
        direction(term);
    });
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

void StatementWriter::direction(const OrderTerm& term) {
    out_ << (term.descending ? " DESC NULLS LAST" : " NULLS FIRST");
}

void StatementWriter::orderBy(const Select& select) {
    if (select.orderBy.empty()) {
        return;
    }
    out_ << " ORDER BY ";
    list(select.orderBy, [&](const OrderTerm& term) {
        expressions_.sortKey(*term.expression);
        direction(term);
    });
}

void StatementWriter::insert(const Insert& insert) {
    out_ << "INSERT INTO ";
    out_.introduce(*insert.table);
    out_ << " (";
    list(insert.columns, [&](const auto& column) {
        out_ << postgresSchemaName(insert.table->definition->columns[column->column].name);
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
        out_ << postgresSchemaName(
                    update.table->definition->columns[assignment.column->column].name)
             << " = ";
        expressions_.assigned(*assignment.value, assignment.column->type);
    });
    where(update.where, " WHERE ");
}

void StatementWriter::deletion(const Delete& deletion) {
    out_ << "DELETE FROM ";
    out_.introduce(*deletion.table);
    where(deletion.where, " WHERE ");
}

/// What the engine can hold: valid UTF-8 without NUL.
std::string plainText(const std::string& text) {
    std::string valid = unicode::toValidUtf8(text);
    for (std::size_t at = valid.find('\0'); at != std::string::npos; at = valid.find('\0', at)) {
        valid.replace(at, 1, "\uFFFD");
    }
    return valid;
}

ParameterValue plainValue(const LiteralValue& literal) {
    switch (literal.kind) {
    case LiteralKind::Integer:
        return literal.integer;
    case LiteralKind::Decimal:
        return literal.real();
    case LiteralKind::Text:
        return plainText(literal.text());
    case LiteralKind::DateTime:
        break;
    }
    return literal.dateTime.isoWithBlank();
}

ParameterValue numberOfText(const std::string& text) {
    const auto plain = numericText(text);
    return plain ? ParameterValue(*plain) : ParameterValue();
}

ParameterValue patternValue(Parameter::Use use, const std::string& pattern) {
    switch (use) {
    case Parameter::Use::SearchLow:
        return utf8(LikePattern(pattern).prefix());
    case Parameter::Use::SearchHigh:
        return behindPrefix(LikePattern(pattern).prefix());
    case Parameter::Use::LikeForm:
        return likeForm(pattern);
    default:
        return regularForm(pattern);
    }
}

} // namespace

Translation PostgresWriter::write(const Statement& statement,
                                  const std::vector<LiteralValue>& values) const {
    StatementWriter writer(values);
    std::vector<Column> columns;
    if (const auto* select = std::get_if<std::unique_ptr<Select>>(&statement.body)) {
        writer.select(**select);
        columns = (*select)->columns;
    } else if (const auto* insert = std::get_if<Insert>(&statement.body)) {
        writer.insert(*insert);
    } else if (const auto* update = std::get_if<Update>(&statement.body)) {
        writer.update(*update);
    } else {
        writer.deletion(std::get<Delete>(statement.body));
    }
    return writer.take(std::move(columns));
}

char PostgresWriter::variantOf(const TextSearch& /*search*/, const LiteralValue& value) const {
    return postgresSearchVariant(value);
}

ParameterValue PostgresWriter::valueOf(const Parameter& parameter,
                                       const LiteralValue& literal) const {
    switch (parameter.use) {
    case Parameter::Use::Value:
        return plainValue(literal);
    case Parameter::Use::FoldedText:
        return unicode::fold(plainText(literal.text()));
    case Parameter::Use::Decimal:
        return decimalOfNumber(literal.raw);
    case Parameter::Use::NumberOfText:
        return numberOfText(literal.text());
    default:
        return patternValue(parameter.use, plainText(literal.text()));
    }
}

} // namespace kintar::companion::dialect
