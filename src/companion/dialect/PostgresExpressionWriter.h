// Expressions in PostgreSQL's language, with the meaning that the dialect gives them.
#pragma once

#include "companion/dialect/ExpressionWriter.h"
#include "companion/dialect/PostgresOutput.h"

namespace kintar::companion::dialect {

/// Writes expressions. What the engine has no built-in for is done by functions that belong to a
/// site's schema: `kintar_fold`, `kintar_number`, `kintar_like`.
class PostgresExpressionWriter final : public ExpressionWriter {
public:
    PostgresExpressionWriter(PostgresOutput& out, SelectWriter selects)
        : out_(out), selects_(std::move(selects)) {}

    void value(const Expression& expression) override;
    /// Of the engine's own truth type.
    void condition(const Expression& expression) override;
    /// What to order and to compare by: texts as names are ordered.
    void sortKey(const Expression& expression) override;
    void groupKey(const Expression& expression) override;
    void projected(const Expression& expression, Projection projection) override;
    void assigned(const Expression& expression, ColumnType column) override;

private:
    void write(const Literal& literal);
    void write(const Constant& constant);
    void write(const ColumnName& column);
    void write(const Negation& negation);
    void write(const Arithmetic& arithmetic);
    void write(const Concatenation& concatenation);
    void write(const Comparison& comparison);
    void write(const LikeTest& test);
    void write(const BetweenTest& test);
    void write(const InListTest& test);
    void write(const InSelectTest& test);
    void write(const ExistsTest& test);
    void write(const NullTest& test);
    void write(const LogicalNot& inversion);
    void write(const LogicalChain& chain);
    void write(const Aggregate& aggregate);

    void plain(const Expression& expression);
    /// As a value whose type the engine can tell, also where it is Null.
    void typed(const Expression& expression);
    /// As text, the way the dialect joins it to texts.
    void text(const Expression& expression);
    /// As an exact number; a text that is none gives Null.
    void number(const Expression& expression);
    /// The text without its letter case, in the order of code points.
    void folded(const Expression& expression);

    void compare(ComparisonOperator operation, const Expression& left, const Expression& right);
    void compareTexts(ComparisonOperator operation, const Expression& left,
                      const Expression& right);
    void compareTextWithNumber(ComparisonOperator operation, const Expression& left,
                               const Expression& right);
    void like(const LikeTest& test);
    void likeLiteral(const Expression& operand, const Literal& pattern);
    void likeRange(const Expression& operand, const Literal& pattern);
    void between(const BetweenTest& test);
    void betweenTextAndNumbers(const BetweenTest& test);
    void inList(const InListTest& test);
    void firstOfOrder(const Aggregate& aggregate);

    PostgresOutput& out_;
    SelectWriter selects_;
};

/// Which text a search for this value gives.
char postgresSearchVariant(const LiteralValue& value);

} // namespace kintar::companion::dialect
