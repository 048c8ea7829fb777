#include "companion/dialect/PostgresExpressionWriter.h"

#include "companion/SiteSchema.h"
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/Types.h"

#include <algorithm>
#include <utility>

namespace kintar::companion::dialect {

void PostgresExpressionWriter::value(const Expression& expression) {
    if (isCondition(expression)) {
        out_ << "(-(";
        plain(expression);
        out_ << ")::int)";
        return;
    }
    plain(expression);
}

void PostgresExpressionWriter::condition(const Expression& expression) {
    if (isCondition(expression)) {
        plain(expression);
        return;
    }
    out_ << "(";
    typed(expression);
    out_ << " <> 0)";
}

void PostgresExpressionWriter::plain(const Expression& expression) {
    if (const ColumnName* column = asColumn(expression); column && column->selected != nullptr) {
        value(*column->selected);
        return;
    }
    dispatch(expression, [&](const auto& e) { write(e); });
}

void PostgresExpressionWriter::typed(const Expression& expression) {
    value(expression);
    out_ << (expression.type == ColumnType::Any ? "::float8" : "");
}

void PostgresExpressionWriter::text(const Expression& expression) {
    switch (expression.type) {
    case ColumnType::Text:
        value(expression);
        break;
    case ColumnType::Real:
        out_ << "trim_scale((";
        value(expression);
        // As text first: made a number directly, it would lose the digits behind the fifteenth.
        out_ << ")::text::numeric)::text";
        break;
    default:
        out_ << "(";
        value(expression);
        out_ << ")::text";
        break;
    }
}

void PostgresExpressionWriter::number(const Expression& expression) {
    const Literal* literal = asLiteral(expression);
    if (isText(expression.type)) {
        if (literal != nullptr) {
            out_ << parameterOf(*literal, Parameter::Use::NumberOfText);
            return;
        }
        out_ << "kintar_number(";
        value(expression);
        out_ << ")";
    } else if (literal != nullptr) {
        out_ << parameterOf(*literal, Parameter::Use::Decimal);
    } else if (expression.type == ColumnType::Real) {
        out_ << "(";
        value(expression);
        out_ << ")::text::numeric";
    } else {
        out_ << "(";
        value(expression);
        out_ << ")::numeric";
    }
}

void PostgresExpressionWriter::folded(const Expression& expression) {
    out_ << "(";
    groupKey(expression);
    out_ << " COLLATE \"C\")";
}

void PostgresExpressionWriter::sortKey(const Expression& expression) {
    if (isText(expression.type)) {
        out_ << "(";
        groupKey(expression);
        out_ << " COLLATE \"und-x-icu\")";
    } else {
        value(expression);
    }
}

void PostgresExpressionWriter::groupKey(const Expression& expression) {
    if (!isText(expression.type)) {
        // A bare number would be the position of a column; one group is as good as another.
        expression.kind == ExpressionKind::Constant ? void(out_ << "NULL IS NULL")
                                                    : value(expression);
    } else if (const Literal* literal = asLiteral(expression)) {
        out_ << parameterOf(*literal, Parameter::Use::FoldedText);
    } else {
        out_ << "kintar_fold(";
        value(expression);
        out_ << ")";
    }
}

void PostgresExpressionWriter::projected(const Expression& expression, Projection projection) {
    switch (projection) {
    case Projection::Plain:
        value(expression);
        break;
    case Projection::Folded:
        isText(expression.type) ? groupKey(expression) : value(expression);
        break;
    case Projection::Number:
        number(expression);
        break;
    }
}

void PostgresExpressionWriter::assigned(const Expression& expression, ColumnType column) {
    if (column == ColumnType::YesNo && expression.type != ColumnType::YesNo &&
        expression.type != ColumnType::Any) {
        out_ << "-((";
        value(expression);
        out_ << ") <> 0)::int";
    } else if (column == ColumnType::Text && isNumber(expression.type)) {
        text(expression);
    } else {
        value(expression);
    }
}

void PostgresExpressionWriter::write(const Literal& literal) {
    out_ << parameterOf(literal, Parameter::Use::Value);
}

void PostgresExpressionWriter::write(const Constant& constant) {
    out_ << (constant.value == ConstantValue::True    ? "(-1)"
             : constant.value == ConstantValue::False ? "0"
                                                      : "NULL");
}

void PostgresExpressionWriter::write(const ColumnName& column) {
    out_ << out_.nameOf(*column.source) << "."
         << out_.schemaName(column.source->definition->columns[column.column].name);
}

void PostgresExpressionWriter::write(const Negation& negation) {
    out_ << "(-(";
    typed(*negation.operand);
    out_ << "))";
}

void PostgresExpressionWriter::write(const Arithmetic& arithmetic) {
    const bool divides = arithmetic.operation == ArithmeticOperator::Divide;
    const bool joinsTexts = isText(arithmetic.type);
    const auto side = [&](const Expression& e) { joinsTexts ? value(e) : typed(e); };
    out_ << (divides ? "((" : "(");
    side(*arithmetic.left);
    out_ << (divides ? ")::float8 " : " ") << (joinsTexts ? "||" : symbolOf(arithmetic.operation))
         << (divides ? " nullif((" : " ");
    side(*arithmetic.right);
    out_ << (divides ? ")::float8, 0))" : ")");
}

void PostgresExpressionWriter::write(const Concatenation& concatenation) {
    out_ << "(";
    bool first = true;
    for (const ExpressionPtr& part : concatenation.parts) {
        out_ << (first ? "" : " || ");
        first = false;
        const bool neverNull = asLiteral(*part) != nullptr && isText(part->type);
        out_ << (neverNull ? "" : "coalesce(");
        text(*part);
        out_ << (neverNull ? "" : ", '')");
    }
    out_ << ")";
}

void PostgresExpressionWriter::write(const Comparison& comparison) {
    compare(comparison.operation, *comparison.left, *comparison.right);
}

void PostgresExpressionWriter::write(const LikeTest& test) {
    out_ << (test.negated ? "NOT (" : "(");
    like(test);
    out_ << ")";
}

void PostgresExpressionWriter::write(const BetweenTest& test) {
    out_ << (test.negated ? "NOT (" : "(");
    between(test);
    out_ << ")";
}

void PostgresExpressionWriter::write(const InListTest& test) {
    out_ << (test.negated ? "NOT (" : "(");
    inList(test);
    out_ << ")";
}

void PostgresExpressionWriter::write(const InSelectTest& test) {
    const ColumnType selected = test.select->columns.front().type;
    Projection projection = Projection::Plain;
    if (isTextWithNumber(test.operand->type, selected)) {
        projection = Projection::Number;
    } else if (isText(test.operand->type) || isText(selected)) {
        projection = Projection::Folded;
    }
    projected(*test.operand, projection);
    out_ << (test.negated ? " NOT IN (" : " IN (");
    selects_(*test.select, projection);
    out_ << ")";
}

void PostgresExpressionWriter::write(const ExistsTest& test) {
    out_ << "EXISTS (";
    selects_(*test.select, Projection::Plain);
    out_ << ")";
}

void PostgresExpressionWriter::write(const NullTest& test) {
    out_ << "(";
    value(*test.operand);
    out_ << (test.negated ? ") IS NOT NULL" : ") IS NULL");
}

void PostgresExpressionWriter::write(const LogicalNot& inversion) {
    out_ << "NOT (";
    condition(*inversion.operand);
    out_ << ")";
}

void PostgresExpressionWriter::write(const LogicalChain& chain) {
    out_ << "(";
    bool first = true;
    for (const ExpressionPtr& term : chain.terms) {
        out_ << (first ? "" : (chain.isAnd ? " AND " : " OR "));
        first = false;
        condition(*term);
    }
    out_ << ")";
}

void PostgresExpressionWriter::write(const Aggregate& aggregate) {
    const bool counts = aggregate.function == AggregateFunction::Count;
    if (aggregate.argument && isText(aggregate.argument->type) && !counts) {
        firstOfOrder(aggregate);
        return;
    }
    out_ << nameOf(aggregate.function) << "(";
    if (aggregate.argument) {
        counts ? value(*aggregate.argument) : typed(*aggregate.argument);
        out_ << (aggregate.function == AggregateFunction::Avg ? "::float8" : "");
    } else {
        out_ << "*";
    }
    out_ << ")";
    const bool wholeSum =
        aggregate.function == AggregateFunction::Sum && aggregate.type == ColumnType::Integer;
    out_ << (wholeSum ? "::int8" : "");
}

/// The engine's own minimum of texts knows no other order than that of the texts themselves.
void PostgresExpressionWriter::firstOfOrder(const Aggregate& aggregate) {
    const bool last = aggregate.function == AggregateFunction::Max;
    out_ << "(array_agg(";
    value(*aggregate.argument);
    out_ << " ORDER BY ";
    sortKey(*aggregate.argument);
    out_ << (last ? " DESC" : "") << ") FILTER (WHERE (";
    value(*aggregate.argument);
    out_ << ") IS NOT NULL))[1]";
}

} // namespace kintar::companion::dialect
