// The types of expressions: what the Resolver gives each of them once its parts have theirs.
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/Resolver.h"
#include "companion/dialect/Types.h"

namespace kintar::companion::dialect {

void Resolver::needComparable(std::size_t position, ColumnType a, ColumnType b) const {
    if (!comparable(a, b)) {
        fail(ErrorKind::TypeMismatch, position,
             "a date-time compares with a date-time only; one is written #month/day/year#");
    }
}

void Resolver::needNumber(const Expression& expression) const {
    if (expression.type != ColumnType::Any && !isNumber(expression.type)) {
        fail(ErrorKind::TypeMismatch, expression.position, "not a number");
    }
}

void Resolver::needCondition(const Expression& expression) const {
    if (expression.type != ColumnType::Any && !isNumber(expression.type)) {
        fail(ErrorKind::TypeMismatch, expression.position, "not a condition");
    }
}

ColumnType Resolver::typeOf(const Literal& literal) const {
    switch (literal.literal) {
    case LiteralKind::Integer:
        return ColumnType::Integer;
    case LiteralKind::Decimal:
        return ColumnType::Real;
    case LiteralKind::Text:
        return ColumnType::Text;
    case LiteralKind::DateTime:
        break;
    }
    return ColumnType::DateTime;
}

ColumnType Resolver::typeOf(const Constant& constant) const {
    return constant.value == ConstantValue::Null ? ColumnType::Any : ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const ColumnName& column) const {
    return column.selected != nullptr ? column.selected->type
                                      : column.source->definition->columns[column.column].type;
}

ColumnType Resolver::typeOf(const Negation& negation) const {
    needNumber(*negation.operand);
    return negation.operand->type == ColumnType::Real ? ColumnType::Real : ColumnType::Integer;
}

ColumnType Resolver::typeOf(const Arithmetic& arithmetic) const {
    const ColumnType left = arithmetic.left->type;
    const ColumnType right = arithmetic.right->type;
    if (arithmetic.operation == ArithmeticOperator::Add && isText(left) && isText(right)) {
        return ColumnType::Text;
    }
    needNumber(*arithmetic.left);
    needNumber(*arithmetic.right);
    const bool real = left == ColumnType::Real || right == ColumnType::Real ||
                      arithmetic.operation == ArithmeticOperator::Divide;
    return real ? ColumnType::Real : ColumnType::Integer;
}

ColumnType Resolver::typeOf(const Concatenation& /*concatenation*/) const {
    return ColumnType::Text;
}

ColumnType Resolver::typeOf(const Comparison& comparison) const {
    needComparable(comparison.position, comparison.left->type, comparison.right->type);
    return ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const LikeTest& test) const {
    if (test.pattern->type != ColumnType::Any && !isText(test.pattern->type)) {
        fail(ErrorKind::TypeMismatch, test.pattern->position, "a pattern is a text");
    }
    return ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const BetweenTest& test) const {
    needComparable(test.low->position, test.operand->type, test.low->type);
    needComparable(test.high->position, test.operand->type, test.high->type);
    needComparable(test.high->position, test.low->type, test.high->type);
    return ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const InListTest& test) const {
    for (const ExpressionPtr& item : test.items) {
        needComparable(item->position, test.operand->type, item->type);
    }
    return ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const InSelectTest& test) const {
    if (test.select->items.size() != 1) {
        fail(ErrorKind::Syntax, test.select->position, "a select behind IN selects one column");
    }
    needComparable(test.position, test.operand->type, test.select->columns.front().type);
    return ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const ExistsTest& /*test*/) const {
    return ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const NullTest& /*test*/) const {
    return ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const LogicalNot& inversion) const {
    needCondition(*inversion.operand);
    return ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const LogicalChain& chain) const {
    for (const ExpressionPtr& term : chain.terms) {
        needCondition(*term);
    }
    return ColumnType::YesNo;
}

ColumnType Resolver::typeOf(const Aggregate& aggregate) const {
    switch (aggregate.function) {
    case AggregateFunction::Count:
        return ColumnType::Integer;
    case AggregateFunction::Min:
    case AggregateFunction::Max:
        return aggregate.argument->type;
    case AggregateFunction::Avg:
        needNumber(*aggregate.argument);
        return ColumnType::Real;
    case AggregateFunction::Sum:
        break;
    }
    needNumber(*aggregate.argument);
    return aggregate.argument->type == ColumnType::Real ? ColumnType::Real : ColumnType::Integer;
}

} // namespace kintar::companion::dialect
