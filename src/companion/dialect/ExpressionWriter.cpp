#include "companion/dialect/ExpressionWriter.h"

namespace kintar::companion::dialect {

bool isCondition(const Expression& expression) {
    return expression.kind >= ExpressionKind::Comparison &&
           expression.kind <= ExpressionKind::LogicalChain;
}

Parameter parameterOf(const Literal& literal, Parameter::Use use) {
    return {literal.ordinal, use, 0, false};
}

} // namespace kintar::companion::dialect
