#include "companion/dialect/SqliteWriter.h"

#include "base/Number.h"
#include "base/Unicode.h"
#include "companion/Catalog.h"
#include "companion/dialect/Decimal.h"
#include "companion/dialect/Keyword.h"
#include "companion/dialect/SqliteExpressionWriter.h"
#include "companion/dialect/StatementWriter.h"
#include "companion/dialect/TextRanges.h"

#include <cmath>
#include <limits>

namespace kintar::companion::dialect {

namespace {

/// Writes one statement.
class SqliteStatementWriter final : public StatementWriter {
public:
    SqliteStatementWriter(const std::vector<LiteralValue>& values, const SearchPlan& plan)
        : StatementWriter(out_, expressions_), out_(values),
          expressions_(out_, [this](const Select& inner, Projection projection) {
              select(inner, projection);
          }) {
        expressions_.follow(plan);
    }

    Translation writeServedRows(const SearchLead& lead);
    Translation writeSample(const SearchLead& lead, std::size_t rows);

private:
    void select(const Select& select) override { this->select(select, Projection::Plain); }
    void select(const Select& select, Projection projection);
    void servedRows(const SearchLead& lead, std::string_view selected);
    [[nodiscard]] std::string_view orderOfRepresentative() const override { return ""; }
    [[nodiscard]] std::string_view direction(const OrderTerm& term) const override {
        return term.descending ? " DESC" : "";
    }

    SqliteOutput out_;
    SqliteExpressionWriter expressions_;
};

void SqliteStatementWriter::select(const Select& select, Projection projection) {
    plainSelect(select, projection, groupsTexts(select));
    const auto tables = tablesThatTellRows(select);
    out_ << (tables.empty() ? "" : " GROUP BY ");
    list(tables, [&](const TableSource* table) { out_ << out_.nameOf(*table) << ".rowid"; });
    orderBy(select);
}

Translation SqliteStatementWriter::writeServedRows(const SearchLead& lead) {
    servedRows(lead, "1");
    return out_.take({});
}

void SqliteStatementWriter::servedRows(const SearchLead& lead, std::string_view selected) {
    out_ << "SELECT " << selected << " FROM ";
    out_.introduce(*lead.table);
    std::string_view before = " WHERE ";
    for (const Expression* condition : lead.served) {
        out_ << before;
        expressions_.indexPart(*condition);
        before = " AND ";
    }
}

Translation SqliteStatementWriter::writeSample(const SearchLead& lead, std::size_t rows) {
    out_ << "SELECT count(*) FROM (";
    servedRows(lead, "*");
    out_ << " LIMIT " << std::to_string(rows) << ") AS " << out_.nameOf(*lead.table);
    std::string_view before = " WHERE ";
    for (const Expression* condition : lead.conditions) {
        out_ << before;
        expressions_.condition(*condition);
        before = " AND ";
    }
    return out_.take({});
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

ParameterValue numberOfText(const std::string& text) {
    const auto plain = numericText(text);
    return plain ? ParameterValue(std::strtod(plain->c_str(), nullptr)) : ParameterValue();
}

} // namespace

Translation SqliteWriter::write(const Statement& statement,
                                const std::vector<LiteralValue>& values) const {
    return write(statement, values, SearchPlan());
}

Translation SqliteWriter::write(const Statement& statement, const std::vector<LiteralValue>& values,
                                const SearchPlan& plan) const {
    return SqliteStatementWriter(values, plan).write(statement);
}

Translation SqliteWriter::writeServedRows(const SearchLead& lead,
                                          const std::vector<LiteralValue>& values) const {
    return SqliteStatementWriter(values, SearchPlan()).writeServedRows(lead);
}

Translation SqliteWriter::writeLargestRow(const SearchLead& lead) const {
    return {"SELECT max(rowid) FROM " + quotedName(lead.table->definition->name), {}, {}, {}};
}

Translation SqliteWriter::writeSample(const SearchLead& lead,
                                      const std::vector<LiteralValue>& values,
                                      std::size_t sample) const {
    return SqliteStatementWriter(values, SearchPlan()).writeSample(lead, sample);
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
