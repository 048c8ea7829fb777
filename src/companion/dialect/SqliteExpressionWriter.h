// Expressions in SQLite's language, with the meaning that the dialect gives them.
#pragma once

#include "companion/dialect/ExpressionWriter.h"
#include "companion/dialect/SearchLeads.h"
#include "companion/dialect/SqliteOutput.h"

namespace kintar::companion::dialect {

/// Writes expressions. What SQLite has no built-in for is done by functions that our connections
/// register: `kintar_like`, `kintar_fold`, `kintar_sort`, `kintar_decimal`, `kintar_compare`, and
/// the collation `KINTAR`.
class SqliteExpressionWriter final : public ExpressionWriter {
public:
    SqliteExpressionWriter(SqliteOutput& out, SelectWriter selects)
        : out_(out), selects_(std::move(selects)) {}

    void value(const Expression& expression) override;
    /// Anything but 0 and Null holds.
    void condition(const Expression& expression) override;
    /// What to order by: Nulls first, texts as names are ordered.
    void sortKey(const Expression& expression) override;
    void groupKey(const Expression& expression) override;
    void projected(const Expression& expression, Projection projection) override;
    /// Of a condition that an index serves, what the index serves: it holds for all rows that the
    /// condition holds for, and few others.
    void indexPart(const Expression& condition);
    /// Which marked test is written as a list, and the order of the others.
    void follow(const SearchPlan& plan) { plan_ = &plan; }
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
    void concatenated(const Expression& part);
    void call(std::string_view function, const Expression& argument);
    void literalOr(const Expression& expression, Parameter::Use use, std::string_view function);

    void compare(ComparisonOperator operation, const Expression& left, const Expression& right);
    void compareTexts(ComparisonOperator operation, const Expression& left,
                      const Expression& right);
    void compareTextWithNumber(ComparisonOperator operation, const Expression& left,
                               const Expression& right);
    void equalsText(const Expression& operand, const Literal& text);
    void textEqualsNumber(const Expression& text, const Literal& number);
    void aboutNumber(const Expression& text, const Literal& number);
    bool indexPartOfEquality(const Comparison& comparison);
    bool searchRanges(const Expression& operand, const Literal& literal, bool isPattern);
    void searchRange(const Expression& operand, const Parameter& low, bool exact);
    [[nodiscard]] std::string_view indexMark(const Expression& operand) const;
    void like(const LikeTest& test);
    void between(const BetweenTest& test);
    void betweenTextAndNumbers(const BetweenTest& test);
    void inList(const InListTest& test);
    void inSelect(const InSelectTest& test);
    void rowTest(const InSelectTest& test);

    void inverted(const Expression& condition);
    std::vector<const Expression*> inOrderOfPlan(const LogicalChain& chain) const;

    static inline const SearchPlan inOrderOfText;

    SqliteOutput& out_;
    SelectWriter selects_;
    const SearchPlan* plan_ = &inOrderOfText;
    const Expression* condition_ = nullptr; ///< the one being written that might be an index's
    bool inRowTest_ = false;
    /// Where False and Null differ, as under NOT: no shortcut may give the one for the other.
    bool falseIsNotNull_ = false;
};

/// How the ranges of a text search are written: their number, and whether they are single texts.
/// 0 for a search that has none.
char searchVariant(const TextSearch& search, const LiteralValue& value);

} // namespace kintar::companion::dialect
