// Comparisons in SQLite's language: texts without regard to case, texts with numbers, searches that
// an index can serve.
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/SearchLeads.h"
#include "companion/dialect/SqliteExpressionWriter.h"
#include "companion/dialect/TextRanges.h"
#include "companion/dialect/Types.h"

namespace kintar::companion::dialect {

namespace {

constexpr char exactVariant = 0x40;

std::vector<TextRange> rangesOf(const TextSearch& search, const LiteralValue& value) {
    return search.isPattern ? rangesOfPattern(value.text()) : rangesOfText(value.text());
}

const Literal* asTextLiteral(const Expression& expression) {
    const Literal* literal = asLiteral(expression);
    return literal != nullptr && literal->literal == LiteralKind::Text ? literal : nullptr;
}

const Literal* asNumberLiteral(const Expression& expression) {
    const Literal* literal = asLiteral(expression);
    return literal != nullptr && isNumber(literal->type) ? literal : nullptr;
}

bool isTextColumn(const Expression& expression) {
    return asColumn(expression) != nullptr && isText(expression.type);
}

const TableSource* sourceOfSearch(const Expression& range) {
    const auto* like = asKind<LikeTest>(range, ExpressionKind::LikeTest);
    const auto* comparison = asKind<Comparison>(range, ExpressionKind::Comparison);
    const ColumnName* column = like != nullptr         ? asColumn(*like->operand)
                               : comparison != nullptr ? asColumn(*comparison->left)
                                                       : nullptr;
    return column != nullptr ? column->source : nullptr;
}

ComparisonOperator mirrored(ComparisonOperator operation) {
    switch (operation) {
    case ComparisonOperator::Less:
        return ComparisonOperator::Greater;
    case ComparisonOperator::LessOrEqual:
        return ComparisonOperator::GreaterOrEqual;
    case ComparisonOperator::Greater:
        return ComparisonOperator::Less;
    case ComparisonOperator::GreaterOrEqual:
        return ComparisonOperator::LessOrEqual;
    default:
        return operation;
    }
}

} // namespace

char searchVariant(const TextSearch& search, const LiteralValue& value) {
    const std::vector<TextRange> ranges = rangesOf(search, value);
    if (ranges.empty()) {
        return 0;
    }
    const bool exact = ranges.front().high.empty();
    return static_cast<char>(ranges.size() | (exact ? exactVariant : 0U));
}

void SqliteExpressionWriter::compare(ComparisonOperator operation, const Expression& left,
                                     const Expression& right) {
    if (isText(left.type) && isText(right.type)) {
        compareTexts(operation, left, right);
    } else if (isTextWithNumber(left.type, right.type)) {
        compareTextWithNumber(operation, left, right);
    } else {
        value(left);
        out_ << " " << symbolOf(operation) << " ";
        value(right);
    }
}

void SqliteExpressionWriter::compareTexts(ComparisonOperator operation, const Expression& left,
                                          const Expression& right) {
    const bool equality = operation == ComparisonOperator::Equal;
    if (equality && isTextColumn(left) && asTextLiteral(right) != nullptr) {
        equalsText(left, *asTextLiteral(right));
        return;
    }
    if (equality && isTextColumn(right) && asTextLiteral(left) != nullptr) {
        equalsText(right, *asTextLiteral(left));
        return;
    }
    const bool ordered = !equality && operation != ComparisonOperator::NotEqual;
    const auto side = [&](const Expression& e) { ordered ? sortKey(e) : groupKey(e); };
    side(left);
    out_ << " " << symbolOf(operation) << " ";
    side(right);
}

void SqliteExpressionWriter::equalsText(const Expression& operand, const Literal& text) {
    out_ << "(";
    if (searchRanges(operand, text, false)) {
        out_ << " AND ";
    }
    call("kintar_fold", operand);
    out_ << " = " << Parameter{text.ordinal, Parameter::Use::FoldedText, 0, false} << ")";
}

/// A plus keeps the engine from serving a condition by an index: where it has to find the rows of
/// another table's row, or has to begin with another range.
std::string_view SqliteExpressionWriter::indexMark(const Expression& operand) const {
    const Expression* range = plan_->range;
    const bool anotherLeads = range != nullptr && range != condition_ &&
                              asColumn(operand) != nullptr &&
                              asColumn(operand)->source == sourceOfSearch(*range);
    return inRowTest_ || anotherLeads ? "+" : "";
}

void SqliteExpressionWriter::searchRange(const Expression& operand, const Parameter& low,
                                         bool exact) {
    out_ << indexMark(operand);
    value(operand);
    out_ << " COLLATE NOCASE " << (exact ? "= " : ">= ") << low;
    if (!exact) {
        Parameter high = low;
        high.use = Parameter::Use::SearchHigh;
        out_ << " AND " << indexMark(operand);
        value(operand);
        out_ << " COLLATE NOCASE < " << high;
    }
}

bool SqliteExpressionWriter::searchRanges(const Expression& operand, const Literal& literal,
                                          bool isPattern) {
    const TextSearch search{literal.ordinal, isPattern};
    out_.addSearch(search);
    const char variant = searchVariant(search, out_.value(literal.ordinal));
    const bool exact = (variant & exactVariant) != 0;
    const auto count = static_cast<std::size_t>(variant & ~exactVariant);
    out_ << (count > 1 ? "(" : "");
    for (std::size_t part = 0; part < count; ++part) {
        out_ << (part == 0 ? "" : " OR ") << (count > 1 && !exact ? "(" : "");
        searchRange(operand, {literal.ordinal, Parameter::Use::SearchLow, part, isPattern}, exact);
        out_ << (count > 1 && !exact ? ")" : "");
    }
    out_ << (count > 1 ? ")" : "");
    return count > 0;
}

void SqliteExpressionWriter::like(const LikeTest& test) {
    const Literal* literal = asTextLiteral(*test.pattern);
    const bool search = literal != nullptr && !test.negated && isTextColumn(*test.operand);
    out_ << "(";
    if (search && searchRanges(*test.operand, *literal, true)) {
        out_ << " AND ";
    }
    out_ << "kintar_like(";
    if (test.operand->type == ColumnType::Real) {
        call("kintar_decimal", *test.operand);
    } else {
        value(*test.operand);
    }
    out_ << ", ";
    value(*test.pattern);
    out_ << "))";
}

void SqliteExpressionWriter::compareTextWithNumber(ComparisonOperator operation,
                                                   const Expression& left,
                                                   const Expression& right) {
    if (isText(right.type)) {
        compareTextWithNumber(mirrored(operation), right, left);
        return;
    }
    // From here the text is on the left.
    if (asTextLiteral(left) != nullptr) {
        out_ << Parameter{asTextLiteral(left)->ordinal, Parameter::Use::NumberOfText, 0, false}
             << " " << symbolOf(operation) << " ";
        value(right);
        return;
    }
    const Literal* number = asNumberLiteral(right);
    if (number != nullptr && operation == ComparisonOperator::Equal) {
        textEqualsNumber(left, *number);
        return;
    }
    out_ << "kintar_compare(";
    value(left);
    out_ << ", ";
    literalOr(right, Parameter::Use::Decimal, "kintar_decimal");
    out_ << ") " << symbolOf(operation) << " 0";
}

void SqliteExpressionWriter::textEqualsNumber(const Expression& text, const Literal& number) {
    if (falseIsNotNull_) {
        call("kintar_decimal", text);
        out_ << " = " << Parameter{number.ordinal, Parameter::Use::Decimal, 0, false};
        return;
    }
    // The index holds numbers as the engine reads them, to 15 digits or so: it finds the few rows
    // near the number, and the exact comparison chooses among them.
    out_ << "(";
    aboutNumber(text, number);
    out_ << " AND ";
    call("kintar_decimal", text);
    out_ << " = " << Parameter{number.ordinal, Parameter::Use::Decimal, 0, false} << ")";
}

void SqliteExpressionWriter::aboutNumber(const Expression& text, const Literal& number) {
    out_ << indexMark(text) << "CAST(";
    value(text);
    out_ << " AS REAL) BETWEEN "
         << Parameter{number.ordinal, Parameter::Use::ApproximateLow, 0, false} << " AND "
         << Parameter{number.ordinal, Parameter::Use::ApproximateHigh, 0, false};
}

bool SqliteExpressionWriter::indexPartOfEquality(const Comparison& comparison) {
    const Literal* number = asNumberLiteral(*comparison.right);
    if (!isTextColumn(*comparison.left)) {
        return false;
    }
    if (number != nullptr) {
        aboutNumber(*comparison.left, *number);
    } else if (!searchRanges(*comparison.left, *asTextLiteral(*comparison.right), false)) {
        out_ << "1";
    }
    return true;
}

void SqliteExpressionWriter::indexPart(const Expression& condition) {
    const auto* comparison = asKind<Comparison>(condition, ExpressionKind::Comparison);
    if (comparison != nullptr && indexPartOfEquality(*comparison)) {
        return;
    }
    if (const Literal* text = searchedText(condition)) {
        const auto& like = static_cast<const LikeTest&>(condition);
        if (!searchRanges(*like.operand, *text, true)) {
            out_ << "1";
        }
        return;
    }
    plain(condition);
}

void SqliteExpressionWriter::between(const BetweenTest& test) {
    const bool texts =
        isText(test.operand->type) || isText(test.low->type) || isText(test.high->type);
    const bool numbers =
        isNumber(test.operand->type) || isNumber(test.low->type) || isNumber(test.high->type);
    if (texts && numbers) {
        betweenTextAndNumbers(test);
        return;
    }
    sortKey(*test.operand);
    for (const std::string_view pick : {" BETWEEN min(", " AND max("}) {
        out_ << pick;
        sortKey(*test.low);
        out_ << ", ";
        sortKey(*test.high);
        out_ << ")";
    }
}

void SqliteExpressionWriter::betweenTextAndNumbers(const BetweenTest& test) {
    const auto within = [&](const Expression& low, const Expression& high) {
        compare(ComparisonOperator::GreaterOrEqual, *test.operand, low);
        out_ << " AND ";
        compare(ComparisonOperator::LessOrEqual, *test.operand, high);
    };
    within(*test.low, *test.high);
    out_ << " OR ";
    within(*test.high, *test.low);
}

} // namespace kintar::companion::dialect
