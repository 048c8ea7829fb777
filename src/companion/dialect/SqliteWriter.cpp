#include "companion/dialect/SqliteWriter.h"

#include "base/Number.h"
#include "base/Unicode.h"
#include "companion/Catalog.h"
#include "companion/dialect/Decimal.h"
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/SqliteExpressionWriter.h"
#include "companion/dialect/TextRanges.h"
#include "companion/dialect/Types.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kintar::companion::dialect {

namespace {

using Projection = SqliteExpressionWriter::Projection;

/// Writes one statement.
class StatementWriter {
public:
    explicit StatementWriter(const std::vector<LiteralValue>& values)
        : out_(values), expressions_(out_, [this](const Select& inner, Projection projection) {
              select(inner, projection);
          }) {}

    void select(const Select& select, Projection projection);
    void insert(const Insert& insert);
    void update(const Update& update);
    void deletion(const Delete& deletion);
    void servedRows(const SearchLead& lead, std::string_view selected);
    void sample(const SearchLead& lead, std::size_t rows);
    void follow(const SearchPlan& plan) { expressions_.follow(plan); }
    Translation take(std::vector<Column> columns) { return out_.take(std::move(columns)); }

private:
    void from(const FromItem& item);
    void where(const ExpressionPtr& condition, std::string_view keyword);
    void groupBy(const Select& select);
    void distinctGroups(const Select& select);
    void distinctRows(const Select& select);
    void orderBy(const Select& select);
    template <class List, class Write>
    void list(const List& items, Write write);

    SqliteOutput out_;
    SqliteExpressionWriter expressions_;
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

/// The tables of the FROM clause that something is selected from, in that order.
std::vector<const TableSource*> selectedTables(const Select& select, std::size_t& all) {
    std::vector<const TableSource*> used;
    for (const SelectItem& item : select.items) {
        collectTables(*item.expression, used);
    }
    std::vector<const TableSource*> own;
    all = 0;
    for (const FromItem& from : select.from) {
        forEachTable(from, [&](const TableSource& table) {
            ++all;
            if (std::ranges::count(used, &table) != 0) {
                own.push_back(&table);
            }
        });
    }
    return own;
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

void StatementWriter::select(const Select& select, Projection projection) {
    // Texts that differ in case only are one: DISTINCT becomes a grouping by what tells them apart.
    const bool groups =
        select.quantifier == Quantifier::Distinct && selectsText(select) && !select.hasAggregates;
    const bool distinct = select.quantifier == Quantifier::Distinct && !groups;
    // Tables get their names before columns are written; the FROM clause is written first and
    // moved.
    out_ << (distinct ? "SELECT DISTINCT " : "SELECT ");
    const std::size_t hole = out_.size();
    out_ << " FROM ";
    list(select.from, [&](const FromItem& item) { from(item); });
    std::string fromClause = out_.cut(hole);
    list(select.items, [&](const SelectItem& item) {
        // Of texts that are one group, every engine shows the same: the first by its bytes.
        const bool representative = projection == Projection::Plain &&
                                    isText(item.expression->type) &&
                                    (groups || isGroupedBy(select, *item.expression));
        out_ << (representative ? "min(" : "");
        expressions_.projected(*item.expression, projection);
        out_ << (representative ? ")" : "");
    });
    out_ << fromClause;
    where(select.where, " WHERE ");
    groups ? distinctGroups(select) : groupBy(select);
    if (select.quantifier == Quantifier::DistinctRow && !select.hasAggregates) {
        distinctRows(select);
    }
    orderBy(select);
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

void StatementWriter::distinctGroups(const Select& select) {
    out_ << " GROUP BY ";
    list(select.items, [&](const SelectItem& item) { expressions_.groupKey(*item.expression); });
}

void StatementWriter::distinctRows(const Select& select) {
    std::size_t all = 0;
    const auto tables = selectedTables(select, all);
    // With something from every table selected, every row is a combination of its own.
    if (tables.empty() || tables.size() == all) {
        return;
    }
    out_ << " GROUP BY ";
    list(tables,
         [&](const TableSource* table) { out_ << sqliteName(out_.nameOf(*table)) << ".rowid"; });
}

void StatementWriter::orderBy(const Select& select) {
    if (select.orderBy.empty()) {
        return;
    }
    out_ << " ORDER BY ";
    list(select.orderBy, [&](const OrderTerm& term) {
        expressions_.sortKey(*term.expression);
        out_ << (term.descending ? " DESC" : "");
    });
}

void StatementWriter::insert(const Insert& insert) {
    out_ << "INSERT INTO ";
    out_.introduce(*insert.table);
    out_ << " (";
    list(insert.columns, [&](const auto& column) {
        out_ << sqliteName(insert.table->definition->columns[column->column].name);
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
        out_ << sqliteName(update.table->definition->columns[assignment.column->column].name)
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

void StatementWriter::servedRows(const SearchLead& lead, std::string_view selected) {
    out_ << "SELECT " << selected << " FROM ";
    out_.introduce(*lead.table);
    std::string_view before = " WHERE ";
    for (const Expression* condition : lead.served) {
        out_ << before;
        expressions_.indexPart(*condition);
        before = " AND ";
    }
}

void StatementWriter::sample(const SearchLead& lead, std::size_t rows) {
    out_ << "SELECT count(*) FROM (";
    servedRows(lead, "*");
    out_ << " LIMIT " << std::to_string(rows) << ") AS " << sqliteName(out_.nameOf(*lead.table));
    std::string_view before = " WHERE ";
    for (const Expression* condition : lead.conditions) {
        out_ << before;
        expressions_.condition(*condition);
        before = " AND ";
    }
}

std::string searchBound(const Parameter& parameter, const LiteralValue& literal) {
    const auto ranges =
        parameter.isPattern ? rangesOfPattern(literal.text()) : rangesOfText(literal.text());
    const TextRange& range = ranges.at(parameter.part);
    return parameter.use == Parameter::Use::SearchLow ? range.low : range.high;
}

/// A bound so near that nothing but the engine's own rounding lies between it and the number.
double approximate(double number, bool high) {
    constexpr double rounding = 1e-12;
    constexpr double largest = std::numeric_limits<double>::max();
    if (!std::isfinite(number)) {
        const bool outwards = high == (number > 0);
        return outwards ? number : std::copysign(largest * (1 - rounding), number);
    }
    return number + (high ? 1 : -1) * std::abs(number) * rounding;
}

ParameterValue plainValue(const LiteralValue& literal) {
    switch (literal.kind) {
    case LiteralKind::Integer:
        return literal.integer;
    case LiteralKind::Decimal:
        return literal.real();
    case LiteralKind::Text:
        return literal.text();
    case LiteralKind::DateTime:
        break;
    }
    return literal.dateTime.isoWithBlank();
}

ParameterValue numberOfText(const std::string& text) {
    const auto plain = numericText(text);
    return plain ? ParameterValue(std::strtod(plain->c_str(), nullptr)) : ParameterValue();
}

} // namespace

Translation SqliteWriter::write(const Statement& statement,
                                const std::vector<LiteralValue>& values) const {
    return write(statement, values, SearchPlan());
}

Translation SqliteWriter::writeServedRows(const SearchLead& lead,
                                          const std::vector<LiteralValue>& values) const {
    StatementWriter writer(values);
    writer.servedRows(lead, "1");
    return writer.take({});
}

Translation SqliteWriter::writeLargestRow(const SearchLead& lead) const {
    return {"SELECT max(rowid) FROM " + sqliteName(lead.table->definition->name), {}, {}, {}};
}

Translation SqliteWriter::writeSample(const SearchLead& lead,
                                      const std::vector<LiteralValue>& values,
                                      std::size_t sample) const {
    StatementWriter writer(values);
    writer.sample(lead, sample);
    return writer.take({});
}

Translation SqliteWriter::write(const Statement& statement, const std::vector<LiteralValue>& values,
                                const SearchPlan& plan) const {
    StatementWriter writer(values);
    writer.follow(plan);
    std::vector<Column> columns;
    if (const auto* select = std::get_if<std::unique_ptr<Select>>(&statement.body)) {
        writer.select(**select, Projection::Plain);
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

char SqliteWriter::variantOf(const TextSearch& search, const LiteralValue& value) const {
    return searchVariant(search, value);
}

ParameterValue SqliteWriter::valueOf(const Parameter& parameter,
                                     const LiteralValue& literal) const {
    switch (parameter.use) {
    case Parameter::Use::Value:
        return plainValue(literal);
    case Parameter::Use::FoldedText:
        return unicode::fold(literal.text());
    case Parameter::Use::SortKey:
        return unicode::sortKey(literal.text());
    case Parameter::Use::Decimal:
        return decimalOfNumber(literal.raw);
    case Parameter::Use::NumberOfText:
        return numberOfText(literal.text());
    case Parameter::Use::ApproximateLow:
        return approximate(literal.real(), false);
    case Parameter::Use::ApproximateHigh:
        return approximate(literal.real(), true);
    case Parameter::Use::SearchLow:
    case Parameter::Use::SearchHigh:
    case Parameter::Use::LikeForm:
    case Parameter::Use::RegularForm:
        break;
    }
    return searchBound(parameter, literal);
}

} // namespace kintar::companion::dialect
