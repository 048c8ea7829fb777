// Comparisons in PostgreSQL's language: texts without regard to case, texts with numbers, searches
// that an index can serve.
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/PostgresExpressionWriter.h"
#include "companion/dialect/PostgresPattern.h"
#include "companion/dialect/Types.h"

#include <algorithm>

namespace kintar::companion::dialect {

namespace {

const Literal* asTextLiteral(const Expression& expression) {
    const Literal* literal = asLiteral(expression);
    return literal != nullptr && literal->literal == LiteralKind::Text ? literal : nullptr;
}

} // namespace

char postgresSearchVariant(const LiteralValue& value) {
    const std::string pattern = value.text();
    constexpr char withoutPrefix = 0x10;
    return static_cast<char>(static_cast<char>(formOfPattern(pattern)) +
                             (hasPrefix(pattern) ? 0 : withoutPrefix));
}

void PostgresExpressionWriter::compare(ComparisonOperator operation, const Expression& left,
                                       const Expression& right) {
    if (isText(left.type) && isText(right.type)) {
        compareTexts(operation, left, right);
        return;
    }
    if (isTextWithNumber(left.type, right.type)) {
        compareTextWithNumber(operation, left, right);
        return;
    }
    value(left);
    out_ << " " << symbolOf(operation) << " ";
    value(right);
}

void PostgresExpressionWriter::compareTexts(ComparisonOperator operation, const Expression& left,
                                            const Expression& right) {
    const bool ordered =
        operation != ComparisonOperator::Equal && operation != ComparisonOperator::NotEqual;
    const auto side = [&](const Expression& e) { ordered ? sortKey(e) : folded(e); };
    side(left);
    out_ << " " << symbolOf(operation) << " ";
    side(right);
}

void PostgresExpressionWriter::compareTextWithNumber(ComparisonOperator operation,
                                                     const Expression& left,
                                                     const Expression& right) {
    number(left);
    out_ << " " << symbolOf(operation) << " ";
    number(right);
}

void PostgresExpressionWriter::like(const LikeTest& test) {
    const Literal* literal = asTextLiteral(*test.pattern);
    if (literal != nullptr && isText(test.operand->type)) {
        likeLiteral(*test.operand, *literal);
        return;
    }
    out_ << "kintar_like(";
    text(*test.operand);
    out_ << ", ";
    text(*test.pattern);
    out_ << ")";
}

void PostgresExpressionWriter::likeRange(const Expression& operand, const Literal& pattern) {
    folded(operand);
    out_ << " >= " << Parameter{pattern.ordinal, Parameter::Use::SearchLow, 0, true} << " AND ";
    folded(operand);
    out_ << " < " << Parameter{pattern.ordinal, Parameter::Use::SearchHigh, 0, true};
}

void PostgresExpressionWriter::likeLiteral(const Expression& operand, const Literal& pattern) {
    out_.addSearch({pattern.ordinal, true});
    const std::string text = out_.value(pattern.ordinal).text();
    const PatternForm form = formOfPattern(text);
    if (form == PatternForm::Exact) {
        folded(operand);
        out_ << " = " << Parameter{pattern.ordinal, Parameter::Use::SearchLow, 0, true};
        return;
    }
    if (hasPrefix(text)) {
        likeRange(operand, pattern);
        if (form == PatternForm::Prefix) {
            return;
        }
        out_ << " AND ";
    }
    const bool regular = form == PatternForm::Regular;
    folded(operand);
    out_ << (regular ? " ~ " : " LIKE ")
         << Parameter{pattern.ordinal,
                      regular ? Parameter::Use::RegularForm : Parameter::Use::LikeForm, 0, true};
}

void PostgresExpressionWriter::between(const BetweenTest& test) {
    const auto any = [&](auto is) {
        return is(test.operand->type) || is(test.low->type) || is(test.high->type);
    };
    if (any(isText) && any(isNumber)) {
        betweenTextAndNumbers(test);
        return;
    }
    sortKey(*test.operand);
    out_ << " BETWEEN SYMMETRIC ";
    sortKey(*test.low);
    out_ << " AND ";
    sortKey(*test.high);
}

void PostgresExpressionWriter::betweenTextAndNumbers(const BetweenTest& test) {
    const auto within = [&](const Expression& low, const Expression& high) {
        compare(ComparisonOperator::GreaterOrEqual, *test.operand, low);
        out_ << " AND ";
        compare(ComparisonOperator::LessOrEqual, *test.operand, high);
    };
    within(*test.low, *test.high);
    out_ << " OR ";
    within(*test.high, *test.low);
}

void PostgresExpressionWriter::inList(const InListTest& test) {
    const bool sameKind = std::ranges::all_of(test.items, [&](const ExpressionPtr& item) {
        return !isText(item->type) && !isText(test.operand->type);
    });
    if (!sameKind) {
        bool first = true;
        for (const ExpressionPtr& item : test.items) {
            out_ << (first ? "" : " OR ");
            first = false;
            compare(ComparisonOperator::Equal, *test.operand, *item);
        }
        return;
    }
    value(*test.operand);
    out_ << " IN (";
    bool first = true;
    for (const ExpressionPtr& item : test.items) {
        out_ << (first ? "" : ", ");
        first = false;
        value(*item);
    }
    out_ << ")";
}

} // namespace kintar::companion::dialect
