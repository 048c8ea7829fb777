#include "companion/dialect/SqliteExpressionWriter.h"

#include "companion/Catalog.h"
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/Types.h"

#include <algorithm>
#include <utility>

namespace kintar::companion::dialect {

void SqliteExpressionWriter::value(const Expression& expression) {
    if (isCondition(expression)) {
        out_ << "-";
        inverted(expression);
        return;
    }
    plain(expression);
}

void SqliteExpressionWriter::inverted(const Expression& condition) {
    const bool before = std::exchange(falseIsNotNull_, true);
    out_ << "(";
    plain(condition);
    out_ << ")";
    falseIsNotNull_ = before;
}

void SqliteExpressionWriter::condition(const Expression& expression) {
    plain(expression);
}

void SqliteExpressionWriter::plain(const Expression& expression) {
    dispatch(expression, [&](const auto& e) { write(e); });
}

void SqliteExpressionWriter::call(std::string_view function, const Expression& argument) {
    out_ << function << "(";
    value(argument);
    out_ << ")";
}

void SqliteExpressionWriter::literalOr(const Expression& expression, Parameter::Use use,
                                       std::string_view function) {
    if (const Literal* literal = asLiteral(expression)) {
        out_ << parameterOf(*literal, use);
    } else {
        call(function, expression);
    }
}

void SqliteExpressionWriter::sortKey(const Expression& expression) {
    if (isText(expression.type)) {
        literalOr(expression, Parameter::Use::SortKey, "kintar_sort");
    } else {
        value(expression);
    }
}

void SqliteExpressionWriter::groupKey(const Expression& expression) {
    if (isText(expression.type)) {
        literalOr(expression, Parameter::Use::FoldedText, "kintar_fold");
    } else if (expression.kind == ExpressionKind::Constant) {
        // A bare number would be the position of a column; one group is as good as another.
        out_ << "NULL IS NULL";
    } else {
        value(expression);
    }
}

void SqliteExpressionWriter::projected(const Expression& expression, Projection projection) {
    switch (projection) {
    case Projection::Plain:
        value(expression);
        break;
    case Projection::Folded:
        groupKey(expression);
        break;
    case Projection::Number:
        call("kintar_decimal", expression);
        break;
    }
}

void SqliteExpressionWriter::assigned(const Expression& expression, ColumnType column) {
    if (column == ColumnType::YesNo && expression.type != ColumnType::YesNo &&
        expression.type != ColumnType::Any) {
        out_ << "-(";
        value(expression);
        out_ << " <> 0)";
    } else if (column == ColumnType::Text && isNumber(expression.type)) {
        call("kintar_decimal", expression);
    } else {
        value(expression);
    }
}

void SqliteExpressionWriter::write(const Literal& literal) {
    out_ << parameterOf(literal, Parameter::Use::Value);
}

void SqliteExpressionWriter::write(const Constant& constant) {
    out_ << (constant.value == ConstantValue::True    ? "-1"
             : constant.value == ConstantValue::False ? "0"
                                                      : "NULL");
}

void SqliteExpressionWriter::write(const ColumnName& column) {
    if (column.selected != nullptr) {
        value(*column.selected);
        return;
    }
    out_ << out_.nameOf(*column.source) << "."
         << out_.schemaName(column.source->definition->columns[column.column].name);
}

void SqliteExpressionWriter::write(const Negation& negation) {
    out_ << "-(";
    value(*negation.operand);
    out_ << ")";
}

void SqliteExpressionWriter::write(const Arithmetic& arithmetic) {
    const bool joinsTexts = isText(arithmetic.type);
    const bool divides = arithmetic.operation == ArithmeticOperator::Divide;
    out_ << (divides ? "(CAST(" : "(");
    value(*arithmetic.left);
    out_ << (divides ? " AS REAL) " : " ") << (joinsTexts ? "||" : symbolOf(arithmetic.operation))
         << " ";
    value(*arithmetic.right);
    out_ << ")";
}

void SqliteExpressionWriter::concatenated(const Expression& part) {
    if (part.kind == ExpressionKind::Literal && isText(part.type)) {
        value(part);
        return;
    }
    out_ << "coalesce(";
    if (part.type == ColumnType::Real) {
        call("kintar_decimal", part);
    } else {
        value(part);
    }
    out_ << ", '')";
}

void SqliteExpressionWriter::write(const Concatenation& concatenation) {
    out_ << "(";
    bool first = true;
    for (const ExpressionPtr& part : concatenation.parts) {
        out_ << (first ? "" : " || ");
        first = false;
        concatenated(*part);
    }
    out_ << ")";
}

void SqliteExpressionWriter::write(const Comparison& comparison) {
    condition_ = &comparison;
    compare(comparison.operation, *comparison.left, *comparison.right);
}

void SqliteExpressionWriter::write(const LikeTest& test) {
    condition_ = &test;
    out_ << (test.negated ? "NOT " : "");
    like(test);
}

void SqliteExpressionWriter::write(const BetweenTest& test) {
    out_ << (test.negated ? "NOT (" : "(");
    between(test);
    out_ << ")";
}

void SqliteExpressionWriter::write(const InListTest& test) {
    const bool before = std::exchange(falseIsNotNull_, falseIsNotNull_ || test.negated);
    out_ << (test.negated ? "NOT (" : "");
    inList(test);
    out_ << (test.negated ? ")" : "");
    falseIsNotNull_ = before;
}

void SqliteExpressionWriter::write(const InSelectTest& test) {
    inSelect(test);
}

void SqliteExpressionWriter::write(const ExistsTest& test) {
    out_ << "EXISTS (";
    selects_(*test.select, Projection::Plain);
    out_ << ")";
}

void SqliteExpressionWriter::write(const NullTest& test) {
    value(*test.operand);
    out_ << (test.negated ? " IS NOT NULL" : " IS NULL");
}

void SqliteExpressionWriter::write(const LogicalNot& inversion) {
    out_ << "NOT ";
    inverted(*inversion.operand);
}

void SqliteExpressionWriter::write(const LogicalChain& chain) {
    out_ << "(";
    bool first = true;
    for (const Expression* term : inOrderOfPlan(chain)) {
        out_ << (first ? "" : (chain.isAnd ? " AND " : " OR "));
        first = false;
        condition(*term);
    }
    out_ << ")";
}

std::vector<const Expression*>
SqliteExpressionWriter::inOrderOfPlan(const LogicalChain& chain) const {
    std::vector<const Expression*> terms;
    for (const ExpressionPtr& term : chain.terms) {
        terms.push_back(term.get());
    }
    if (!plan_->order.empty()) {
        const auto place = [this](const Expression* term) {
            const auto* test = asKind<InSelectTest>(*term, ExpressionKind::InSelectTest);
            return test == nullptr || !test->byRow || test == plan_->lead
                       ? -1
                       : std::ranges::find(plan_->order, test) - plan_->order.begin();
        };
        std::ranges::stable_sort(terms, std::ranges::less(), place);
    }
    return terms;
}

void SqliteExpressionWriter::write(const Aggregate& aggregate) {
    out_ << nameOf(aggregate.function) << "(";
    if (aggregate.argument) {
        value(*aggregate.argument);
        const bool ordersTexts =
            isText(aggregate.argument->type) && aggregate.function != AggregateFunction::Count;
        out_ << (ordersTexts ? " COLLATE KINTAR" : "");
    } else {
        out_ << "*";
    }
    out_ << ")";
}

void SqliteExpressionWriter::inList(const InListTest& test) {
    const bool sameKind = std::ranges::all_of(test.items, [&](const ExpressionPtr& item) {
        return !isText(item->type) && !isText(test.operand->type);
    });
    if (sameKind) {
        value(*test.operand);
        out_ << " IN (";
        bool first = true;
        for (const ExpressionPtr& item : test.items) {
            out_ << (first ? "" : ", ");
            first = false;
            value(*item);
        }
        out_ << ")";
        return;
    }
    out_ << "(";
    bool first = true;
    for (const ExpressionPtr& item : test.items) {
        out_ << (first ? "" : " OR ");
        first = false;
        compare(ComparisonOperator::Equal, *test.operand, *item);
    }
    out_ << ")";
}

void SqliteExpressionWriter::rowTest(const InSelectTest& test) {
    const Expression& selected = *test.select->items.front().expression;
    out_ << "EXISTS (SELECT 1 FROM ";
    out_.introduce(*asColumn(selected)->source);
    out_ << " WHERE ";
    value(selected);
    out_ << " = ";
    value(*test.operand);
    if (test.select->where) {
        const bool before = std::exchange(inRowTest_, true);
        out_ << " AND ";
        condition(*test.select->where);
        inRowTest_ = before;
    }
    out_ << ")";
}

void SqliteExpressionWriter::inSelect(const InSelectTest& test) {
    if (test.byRow && &test != plan_->lead) {
        rowTest(test);
        return;
    }
    const ColumnType selected = test.select->columns.front().type;
    Projection projection = Projection::Plain;
    if (isTextWithNumber(test.operand->type, selected)) {
        projection = Projection::Number;
    } else if (isText(test.operand->type)) {
        projection = Projection::Folded;
    }
    projected(*test.operand, projection);
    out_ << (test.negated ? " NOT IN (" : " IN (");
    selects_(*test.select, projection);
    out_ << ")";
}

} // namespace kintar::companion::dialect
