#include "companion/dialect/Evaluator.h"

#include "base/Number.h"
#include "base/Unicode.h"
#include "companion/dialect/Decimal.h"
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/LikePattern.h"
#include "companion/dialect/Types.h"

#include <algorithm>

namespace kintar::companion::dialect {

namespace {

using Value = Evaluator::Value;
using Truth = Evaluator::Truth;

bool isNull(const Value& value) {
    return std::holds_alternative<std::monostate>(value);
}

double realOf(const Value& value) {
    const auto* whole = std::get_if<std::int64_t>(&value);
    const auto* real = std::get_if<double>(&value);
    return whole != nullptr ? static_cast<double>(*whole) : (real != nullptr ? *real : 0);
}

std::string textOf(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*whole);
    }
    return isNull(value) ? std::string() : decimalText(realOf(value));
}

int order(const std::string& a, const std::string& b) {
    return a < b ? -1 : static_cast<int>(a > b);
}

/// How two texts or two numbers compare; nothing where one is Null.
std::optional<int> compareValues(const Value& a, const Value& b, bool asDates) {
    if (isNull(a) || isNull(b)) {
        return std::nullopt;
    }
    if (std::holds_alternative<std::string>(a) && std::holds_alternative<std::string>(b)) {
        return asDates ? order(textOf(a), textOf(b))
                       : order(unicode::sortKey(textOf(a)), unicode::sortKey(textOf(b)));
    }
    const auto* wholeA = std::get_if<std::int64_t>(&a);
    const auto* wholeB = std::get_if<std::int64_t>(&b);
    if (wholeA != nullptr && wholeB != nullptr) {
        return *wholeA < *wholeB ? -1 : static_cast<int>(*wholeA > *wholeB);
    }
    return realOf(a) < realOf(b) ? -1 : static_cast<int>(realOf(a) > realOf(b));
}

bool holds(ComparisonOperator operation, int order) {
    switch (operation) {
    case ComparisonOperator::Equal:
        return order == 0;
    case ComparisonOperator::NotEqual:
        return order != 0;
    case ComparisonOperator::Less:
        return order < 0;
    case ComparisonOperator::LessOrEqual:
        return order <= 0;
    case ComparisonOperator::Greater:
        return order > 0;
    case ComparisonOperator::GreaterOrEqual:
        break;
    }
    return order >= 0;
}

Truth negatedIf(bool negated, Truth truth) {
    return truth && negated ? Truth(!*truth) : truth;
}

/// What AND makes of two answers; OR is the same with True and False exchanged.
Truth both(Truth a, Truth b, bool isAnd) {
    if ((a && *a != isAnd) || (b && *b != isAnd)) {
        return !isAnd;
    }
    return a && b ? Truth(isAnd) : std::nullopt;
}

Value wholeResult(ArithmeticOperator operation, std::int64_t a, std::int64_t b) {
    std::int64_t result = 0;
    bool overflow = false;
    switch (operation) {
    case ArithmeticOperator::Add:
        overflow = __builtin_add_overflow(a, b, &result);
        break;
    case ArithmeticOperator::Subtract:
        overflow = __builtin_sub_overflow(a, b, &result);
        break;
    default:
        overflow = __builtin_mul_overflow(a, b, &result);
        break;
    }
    return overflow ? Value() : Value(result);
}

Value realResult(ArithmeticOperator operation, double a, double b) {
    switch (operation) {
    case ArithmeticOperator::Add:
        return a + b;
    case ArithmeticOperator::Subtract:
        return a - b;
    case ArithmeticOperator::Multiply:
        return a * b;
    case ArithmeticOperator::Divide:
        break;
    }
    return b == 0 ? Value() : Value(a / b);
}

} // namespace

Value Evaluator::value(const Expression& expression) const {
    return dispatch(expression, [&](const auto& e) -> Value {
        if constexpr (requires { evaluate(e); }) {
            return evaluate(e);
        } else {
            const Truth truth = condition(e);
            return truth ? Value(static_cast<std::int64_t>(*truth ? -1 : 0)) : Value();
        }
    });
}

Truth Evaluator::condition(const Expression& expression) const {
    return dispatch(expression, [&](const auto& e) -> Truth {
        if constexpr (requires { test(e); }) {
            return test(e);
        } else if constexpr (requires { evaluate(e); }) {
            const Value value = evaluate(e);
            return isNull(value) ? std::nullopt : Truth(realOf(value) != 0);
        } else {
            return std::nullopt;
        }
    });
}

std::optional<std::string> Evaluator::decimal(const Expression& expression,
                                              const Value& value) const {
    const Literal* literal = asLiteral(expression);
    // A long number written in the statement keeps digits that its value has lost.
    return literal != nullptr && literal->literal == LiteralKind::Decimal
               ? decimalOfNumber(literals_[literal->ordinal].raw)
               : numericText(textOf(value));
}

std::optional<int> Evaluator::compared(const Value& a, const Expression& left,
                                       const Expression& right) const {
    const Value b = value(right);
    const bool textA = std::holds_alternative<std::string>(a);
    const bool textB = std::holds_alternative<std::string>(b);
    if (textA == textB || isNull(a) || isNull(b)) {
        const bool asDates =
            left.type == ColumnType::DateTime || right.type == ColumnType::DateTime;
        return compareValues(a, b, asDates);
    }
    const auto decimalA = decimal(left, a);
    const auto decimalB = decimal(right, b);
    return decimalA && decimalB ? std::optional(compareDecimals(*decimalA, *decimalB))
                                : std::nullopt;
}

Value Evaluator::evaluate(const Literal& literal) const {
    const LiteralValue& value = literals_[literal.ordinal];
    switch (value.kind) {
    case LiteralKind::Integer:
        return value.integer;
    case LiteralKind::Decimal:
        return value.real();
    case LiteralKind::Text:
        return value.text();
    case LiteralKind::DateTime:
        break;
    }
    return value.dateTime.isoWithBlank();
}

Value Evaluator::evaluate(const Constant& constant) const {
    if (constant.value == ConstantValue::Null) {
        return {};
    }
    return static_cast<std::int64_t>(constant.value == ConstantValue::True ? -1 : 0);
}

Value Evaluator::evaluate(const ColumnName& column) const {
    const FieldValue field = rows_.at(row_, column.column);
    switch (field.kind()) {
    case FieldValue::Kind::Null:
        return {};
    case FieldValue::Kind::Integer:
        return field.integer();
    case FieldValue::Kind::Real:
        return field.real();
    case FieldValue::Kind::Text:
        break;
    }
    return std::string(field.view());
}

Value Evaluator::evaluate(const Negation& negation) const {
    const Value operand = value(*negation.operand);
    if (const auto* whole = std::get_if<std::int64_t>(&operand)) {
        return wholeResult(ArithmeticOperator::Subtract, 0, *whole);
    }
    return isNull(operand) ? Value() : Value(-realOf(operand));
}

Value Evaluator::evaluate(const Arithmetic& arithmetic) const {
    const Value left = value(*arithmetic.left);
    const Value right = value(*arithmetic.right);
    if (isNull(left) || isNull(right)) {
        return {};
    }
    if (isText(arithmetic.type)) {
        return textOf(left) + textOf(right);
    }
    const auto* a = std::get_if<std::int64_t>(&left);
    const auto* b = std::get_if<std::int64_t>(&right);
    if (a != nullptr && b != nullptr && arithmetic.operation != ArithmeticOperator::Divide) {
        return wholeResult(arithmetic.operation, *a, *b);
    }
    return realResult(arithmetic.operation, realOf(left), realOf(right));
}

Value Evaluator::evaluate(const Concatenation& concatenation) const {
    std::string joined;
    for (const ExpressionPtr& part : concatenation.parts) {
        joined += textOf(value(*part));
    }
    return joined;
}

Truth Evaluator::test(const Comparison& comparison) const {
    const auto order = compared(value(*comparison.left), *comparison.left, *comparison.right);
    return order ? Truth(holds(comparison.operation, *order)) : std::nullopt;
}

Truth Evaluator::test(const LikeTest& like) const {
    const Value operand = value(*like.operand);
    const Value pattern = value(*like.pattern);
    if (isNull(operand) || isNull(pattern)) {
        return std::nullopt;
    }
    return LikePattern(textOf(pattern)).matches(textOf(operand)) != like.negated;
}

Truth Evaluator::test(const BetweenTest& between) const {
    const Value operand = value(*between.operand);
    const auto low = compared(operand, *between.operand, *between.low);
    const auto high = compared(operand, *between.operand, *between.high);
    if (!low || !high) {
        return std::nullopt;
    }
    const bool within = (*low >= 0 && *high <= 0) || (*low <= 0 && *high >= 0);
    return within != between.negated;
}

Truth Evaluator::test(const InListTest& in) const {
    const Value operand = value(*in.operand);
    Truth found = false;
    for (const ExpressionPtr& item : in.items) {
        const auto order = compared(operand, *in.operand, *item);
        found = both(found, order ? Truth(*order == 0) : std::nullopt, false);
    }
    return negatedIf(in.negated, found);
}

Truth Evaluator::test(const NullTest& null) const {
    return isNull(value(*null.operand)) != null.negated;
}

Truth Evaluator::test(const LogicalNot& inversion) const {
    return negatedIf(true, condition(*inversion.operand));
}

Truth Evaluator::test(const LogicalChain& chain) const {
    Truth all = chain.isAnd;
    for (const ExpressionPtr& term : chain.terms) {
        all = both(all, condition(*term), chain.isAnd);
    }
    return all;
}

} // namespace kintar::companion::dialect
