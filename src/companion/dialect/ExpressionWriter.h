// Expressions in an engine's own language, with the meaning that the dialect gives them.
#pragma once

#include "companion/dialect/EngineWriter.h"

#include <cstdint>
#include <functional>

namespace kintar::companion::dialect {

/// How a value is written that is compared with others: as it is, a text without its letter case,
/// or as an exact number.
enum class Projection : std::uint8_t { Plain, Folded, Number };

/// Writes a sub-select; its one column as `Projection` says.
using SelectWriter = std::function<void(const Select&, Projection)>;

/// What a statement asks of an engine's writer of expressions.
class ExpressionWriter {
public:
    ExpressionWriter() = default;
    ExpressionWriter(const ExpressionWriter&) = delete;
    ExpressionWriter& operator=(const ExpressionWriter&) = delete;
    virtual ~ExpressionWriter() = default;

    /// As a value: a condition gives -1, 0 or Null.
    virtual void value(const Expression& expression) = 0;
    /// As a condition. Safe between AND and OR without parentheses.
    virtual void condition(const Expression& expression) = 0;
    /// What to order by: texts as names are ordered.
    virtual void sortKey(const Expression& expression) = 0;
    /// What tells groups apart: texts without their letter case.
    virtual void groupKey(const Expression& expression) = 0;
    virtual void projected(const Expression& expression, Projection projection) = 0;
    /// The value for a column of this type.
    virtual void assigned(const Expression& expression, ColumnType column) = 0;
};

/// Whether an expression holds or not, rather than having a value.
bool isCondition(const Expression& expression);
Parameter parameterOf(const Literal& literal, Parameter::Use use);

} // namespace kintar::companion::dialect
