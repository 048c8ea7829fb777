#include "companion/dialect/PostgresWriter.h"

#include "base/Number.h"
#include "base/Unicode.h"
#include "companion/dialect/Decimal.h"
#include "companion/dialect/LikePattern.h"
#include "companion/dialect/PostgresExpressionWriter.h"
#include "companion/dialect/PostgresPattern.h"
#include "companion/dialect/StatementWriter.h"
#include "companion/dialect/TextRanges.h"

namespace kintar::companion::dialect {

namespace {

/// Writes one statement.
class PostgresStatementWriter final : public StatementWriter {
public:
    explicit PostgresStatementWriter(const std::vector<LiteralValue>& values)
        : StatementWriter(out_, expressions_), out_(values),
          expressions_(out_, [this](const Select& inner, Projection projection) {
              // It tells what there is; how often and in which order makes no difference to it.
              plainSelect(inner, projection, false);
          }) {}

private:
    void select(const Select& select) override;
    void distinctRows(const Select& select, const std::vector<const TableSource*>& tables);
    [[nodiscard]] std::string_view orderOfRepresentative() const override {
        return " COLLATE \"C\"";
    }
    [[nodiscard]] std::string_view direction(const OrderTerm& term) const override {
        return term.descending ? " DESC NULLS LAST" : " NULLS FIRST";
    }

    PostgresOutput out_;
    PostgresExpressionWriter expressions_;
};

void PostgresStatementWriter::select(const Select& select) {
    const auto tables = tablesThatTellRows(select);
    if (!tables.empty()) {
        distinctRows(select, tables);
        return;
    }
    plainSelect(select, Projection::Plain, groupsTexts(select));
    orderBy(select);
}

/// One row for each combination of records of the selected tables, which `ctid` tells apart. What
/// it is ordered by need not be selected, so it goes along and is dropped again.
void PostgresStatementWriter::distinctRows(const Select& select,
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
        out_ << direction(term);
    });
}

/// What the engine can hold: valid UTF-8 without NUL.
std::string plainText(const std::string& text) {
    std::string valid = unicode::toValidUtf8(text);
    for (std::size_t at = valid.find('\0'); at != std::string::npos; at = valid.find('\0', at)) {
        valid.replace(at, 1, "\uFFFD");
    }
    return valid;
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
    return PostgresStatementWriter(values).write(statement);
}

char PostgresWriter::variantOf(const TextSearch& /*search*/, const LiteralValue& value) const {
    return postgresSearchVariant(value);
}

ParameterValue PostgresWriter::valueOf(const Parameter& parameter,
                                       const LiteralValue& literal) const {
    switch (parameter.use) {
    case Parameter::Use::Value:
        return literal.kind == LiteralKind::Text ? plainText(literal.text()) : plainValue(literal);
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
