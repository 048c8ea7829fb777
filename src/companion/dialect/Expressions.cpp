#include "companion/dialect/Expressions.h"

#include "companion/dialect/Statements.h"

#include <array>

namespace kintar::companion::dialect {

namespace {

/// Every part that is not simple stands in parentheses: no precedence to get wrong.
void printPart(const Expression& part, std::string& out) {
    const bool simple =
        part.kind == ExpressionKind::Literal || part.kind == ExpressionKind::Constant ||
        part.kind == ExpressionKind::ColumnName || part.kind == ExpressionKind::Aggregate;
    out += simple ? "" : "(";
    part.print(out);
    out += simple ? "" : ")";
}

void printList(const std::vector<ExpressionPtr>& parts, std::string_view between,
               std::string& out) {
    for (std::size_t at = 0; at < parts.size(); ++at) {
        out += at == 0 ? "" : between;
        printPart(*parts[at], out);
    }
}

void printInfix(const Expression& left, std::string_view symbol, const Expression& right,
                std::string& out) {
    printPart(left, out);
    out += ' ';
    out += symbol;
    out += ' ';
    printPart(right, out);
}

} // namespace

std::string_view symbolOf(ArithmeticOperator operation) {
    constexpr std::array<std::string_view, 4> symbols{"+", "-", "*", "/"};
    return symbols.at(static_cast<std::size_t>(operation));
}

std::string_view symbolOf(ComparisonOperator operation) {
    constexpr std::array<std::string_view, 6> symbols{"=", "<>", "<", "<=", ">", ">="};
    return symbols.at(static_cast<std::size_t>(operation));
}

std::string_view nameOf(AggregateFunction function) {
    constexpr std::array<std::string_view, 5> names{"Count", "Sum", "Min", "Max", "Avg"};
    return names.at(static_cast<std::size_t>(function));
}

InSelectTest::InSelectTest(std::size_t at, ExpressionPtr e, std::unique_ptr<Select> s, bool n)
    : Expression(ExpressionKind::InSelectTest, at), operand(std::move(e)), select(std::move(s)),
      negated(n) {}
InSelectTest::~InSelectTest() = default;

ExistsTest::ExistsTest(std::size_t at, std::unique_ptr<Select> s)
    : Expression(ExpressionKind::ExistsTest, at), select(std::move(s)) {}
ExistsTest::~ExistsTest() = default;

void Literal::print(std::string& out) const {
    out += printed;
}

void Constant::print(std::string& out) const {
    constexpr std::array<std::string_view, 3> names{"True", "False", "Null"};
    out += names.at(static_cast<std::size_t>(value));
}

void ColumnName::print(std::string& out) const {
    out += qualifier.empty() ? "" : bracketed(qualifier) + ".";
    out += bracketed(name);
}

void Negation::print(std::string& out) const {
    out += "- ";
    // In parentheses also where it is simple: a minus before a number would be its sign.
    out += '(';
    operand->print(out);
    out += ')';
}

void Arithmetic::print(std::string& out) const {
    printInfix(*left, symbolOf(operation), *right, out);
}

void Concatenation::print(std::string& out) const {
    printList(parts, " & ", out);
}

void Comparison::print(std::string& out) const {
    printInfix(*left, symbolOf(operation), *right, out);
}

void LikeTest::print(std::string& out) const {
    printInfix(*operand, negated ? "NOT LIKE" : "LIKE", *pattern, out);
}

void BetweenTest::print(std::string& out) const {
    printInfix(*operand, negated ? "NOT BETWEEN" : "BETWEEN", *low, out);
    out += " AND ";
    printPart(*high, out);
}

void InListTest::print(std::string& out) const {
    printPart(*operand, out);
    out += negated ? " NOT IN (" : " IN (";
    printList(items, ", ", out);
    out += ')';
}

void InSelectTest::print(std::string& out) const {
    printPart(*operand, out);
    out += negated ? " NOT IN (" : " IN (";
    select->print(out);
    out += ')';
}

void ExistsTest::print(std::string& out) const {
    out += "EXISTS (";
    select->print(out);
    out += ')';
}

void NullTest::print(std::string& out) const {
    printPart(*operand, out);
    out += negated ? " IS NOT NULL" : " IS NULL";
}

void LogicalNot::print(std::string& out) const {
    out += "NOT ";
    printPart(*operand, out);
}

void LogicalChain::print(std::string& out) const {
    printList(terms, isAnd ? " AND " : " OR ", out);
}

void Aggregate::print(std::string& out) const {
    out += nameOf(function);
    out += '(';
    if (argument) {
        argument->print(out);
    } else {
        out += '*';
    }
    out += ')';
}

} // namespace kintar::companion::dialect
