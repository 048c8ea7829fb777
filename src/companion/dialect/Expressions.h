// The expressions of a statement: one small type a construct, each able to print itself.
#pragma once

#include "companion/dialect/LiteralValue.h"
#include "server/Recordset.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kintar::companion::dialect {

struct Select;
struct TableSource;

enum class ExpressionKind : std::uint8_t {
    Literal,
    Constant,
    ColumnName,
    Negation,
    Arithmetic,
    Concatenation,
    Comparison,
    LikeTest,
    BetweenTest,
    InListTest,
    InSelectTest,
    ExistsTest,
    NullTest,
    LogicalNot,
    LogicalChain,
    Aggregate,
};

/// An expression. Its type is set when names are resolved; `Any` is the type of Null alone.
struct Expression {
    Expression(ExpressionKind k, std::size_t at) : kind(k), position(at) {}
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;
    virtual ~Expression() = default;
    /// Appends the expression as the dialect writes it; parsed again, it gives the same tree.
    virtual void print(std::string& out) const = 0;

    ExpressionKind kind;
    std::size_t position; ///< byte of the statement
    ColumnType type = ColumnType::Any;
};

using ExpressionPtr = std::unique_ptr<Expression>;

/// A number, text or date-time: the `ordinal`th literal of the statement, from 0.
struct Literal final : Expression {
    Literal(std::size_t at, LiteralKind k, std::size_t n, std::string text)
        : Expression(ExpressionKind::Literal, at), literal(k), ordinal(n),
          printed(std::move(text)) {}
    void print(std::string& out) const override;
    LiteralKind literal;
    std::size_t ordinal;
    std::string printed;
};

enum class ConstantValue : std::uint8_t { True, False, Null };

struct Constant final : Expression {
    Constant(std::size_t at, ConstantValue v)
        : Expression(ExpressionKind::Constant, at), value(v) {}
    void print(std::string& out) const override;
    ConstantValue value;
};

/// A column, with or without the name of its table. Resolved, it is a column of `source`, or, in an
/// ORDER BY, the selected expression `selected` that its name stands for.
struct ColumnName final : Expression {
    ColumnName(std::size_t at, std::string table, std::string columnName)
        : Expression(ExpressionKind::ColumnName, at), qualifier(std::move(table)),
          name(std::move(columnName)) {}
    void print(std::string& out) const override;
    std::string qualifier; ///< empty where none is written
    std::string name;
    const TableSource* source = nullptr;
    std::size_t column = 0;
    const Expression* selected = nullptr;
};

struct Negation final : Expression {
    Negation(std::size_t at, ExpressionPtr e)
        : Expression(ExpressionKind::Negation, at), operand(std::move(e)) {}
    void print(std::string& out) const override;
    ExpressionPtr operand;
};

enum class ArithmeticOperator : std::uint8_t { Add, Subtract, Multiply, Divide };

struct Arithmetic final : Expression {
    Arithmetic(std::size_t at, ArithmeticOperator o, ExpressionPtr l, ExpressionPtr r)
        : Expression(ExpressionKind::Arithmetic, at), operation(o), left(std::move(l)),
          right(std::move(r)) {}
    void print(std::string& out) const override;
    ArithmeticOperator operation;
    ExpressionPtr left;
    ExpressionPtr right;
};

/// `a & b & c`: Null counts as empty.
struct Concatenation final : Expression {
    Concatenation(std::size_t at, std::vector<ExpressionPtr> p)
        : Expression(ExpressionKind::Concatenation, at), parts(std::move(p)) {}
    void print(std::string& out) const override;
    std::vector<ExpressionPtr> parts;
};

enum class ComparisonOperator : std::uint8_t {
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
};

std::string_view symbolOf(ArithmeticOperator operation);
std::string_view symbolOf(ComparisonOperator operation);

struct Comparison final : Expression {
    Comparison(std::size_t at, ComparisonOperator o, ExpressionPtr l, ExpressionPtr r)
        : Expression(ExpressionKind::Comparison, at), operation(o), left(std::move(l)),
          right(std::move(r)) {}
    void print(std::string& out) const override;
    ComparisonOperator operation;
    ExpressionPtr left;
    ExpressionPtr right;
};

struct LikeTest final : Expression {
    LikeTest(std::size_t at, ExpressionPtr e, ExpressionPtr p, bool n)
        : Expression(ExpressionKind::LikeTest, at), operand(std::move(e)), pattern(std::move(p)),
          negated(n) {}
    void print(std::string& out) const override;
    ExpressionPtr operand;
    ExpressionPtr pattern;
    bool negated;
};

/// The bounds may stand in either order.
struct BetweenTest final : Expression {
    BetweenTest(std::size_t at, ExpressionPtr e, ExpressionPtr l, ExpressionPtr h, bool n)
        : Expression(ExpressionKind::BetweenTest, at), operand(std::move(e)), low(std::move(l)),
          high(std::move(h)), negated(n) {}
    void print(std::string& out) const override;
    ExpressionPtr operand;
    ExpressionPtr low;
    ExpressionPtr high;
    bool negated;
};

struct InListTest final : Expression {
    InListTest(std::size_t at, ExpressionPtr e, std::vector<ExpressionPtr> i, bool n)
        : Expression(ExpressionKind::InListTest, at), operand(std::move(e)), items(std::move(i)),
          negated(n) {}
    void print(std::string& out) const override;
    ExpressionPtr operand;
    std::vector<ExpressionPtr> items;
    bool negated;
};

struct InSelectTest final : Expression {
    InSelectTest(std::size_t at, ExpressionPtr e, std::unique_ptr<Select> s, bool n);
    ~InSelectTest() override;
    void print(std::string& out) const override;
    ExpressionPtr operand;
    std::unique_ptr<Select> select;
    bool negated;
    /// Whether it may as well be asked of one row at a time: set by `markRowTests`.
    bool byRow = false;
};

struct ExistsTest final : Expression {
    ExistsTest(std::size_t at, std::unique_ptr<Select> s);
    ~ExistsTest() override;
    void print(std::string& out) const override;
    std::unique_ptr<Select> select;
};

struct NullTest final : Expression {
    NullTest(std::size_t at, ExpressionPtr e, bool n)
        : Expression(ExpressionKind::NullTest, at), operand(std::move(e)), negated(n) {}
    void print(std::string& out) const override;
    ExpressionPtr operand;
    bool negated;
};

struct LogicalNot final : Expression {
    LogicalNot(std::size_t at, ExpressionPtr e)
        : Expression(ExpressionKind::LogicalNot, at), operand(std::move(e)) {}
    void print(std::string& out) const override;
    ExpressionPtr operand;
};

/// `a AND b AND c`, or the same with OR; two terms at least.
struct LogicalChain final : Expression {
    LogicalChain(std::size_t at, bool and_, std::vector<ExpressionPtr> t)
        : Expression(ExpressionKind::LogicalChain, at), isAnd(and_), terms(std::move(t)) {}
    void print(std::string& out) const override;
    bool isAnd;
    std::vector<ExpressionPtr> terms;
};

enum class AggregateFunction : std::uint8_t { Count, Sum, Min, Max, Avg };

std::string_view nameOf(AggregateFunction function);

/// An aggregate over the rows of a group; `Count(*)` has no argument.
struct Aggregate final : Expression {
    Aggregate(std::size_t at, AggregateFunction f, ExpressionPtr a)
        : Expression(ExpressionKind::Aggregate, at), function(f), argument(std::move(a)) {}
    void print(std::string& out) const override;
    AggregateFunction function;
    ExpressionPtr argument;
};

} // namespace kintar::companion::dialect
