#include "companion/dialect/ExpressionParser.h"

#include "companion/dialect/Keyword.h"

#include <array>
#include <optional>
#include <utility>

namespace kintar::companion::dialect {

namespace {

std::optional<ComparisonOperator> comparisonOf(TokenKind kind) {
    switch (kind) {
    case TokenKind::Equal:
        return ComparisonOperator::Equal;
    case TokenKind::NotEqual:
        return ComparisonOperator::NotEqual;
    case TokenKind::Less:
        return ComparisonOperator::Less;
    case TokenKind::LessOrEqual:
        return ComparisonOperator::LessOrEqual;
    case TokenKind::Greater:
        return ComparisonOperator::Greater;
    case TokenKind::GreaterOrEqual:
        return ComparisonOperator::GreaterOrEqual;
    default:
        return std::nullopt;
    }
}

std::optional<AggregateFunction> aggregateOf(std::string_view name) {
    constexpr std::array functions{AggregateFunction::Count, AggregateFunction::Sum,
                                   AggregateFunction::Min, AggregateFunction::Max,
                                   AggregateFunction::Avg};
    for (const AggregateFunction function : functions) {
        if (sameName(nameOf(function), name)) {
            return function;
        }
    }
    return std::nullopt;
}

} // namespace

void ExpressionParser::checkChain(std::size_t count) const {
    if (count > maximumChain) {
        reader_.fail(reader_.peek().begin,
                     "a chain of more than " + std::to_string(maximumChain) + " terms");
    }
}

ExpressionPtr ExpressionParser::expression() {
    const TokenReader::Level level(reader_);
    return chain(false);
}

ExpressionPtr ExpressionParser::chain(bool isAnd) {
    const std::size_t at = reader_.peek().begin;
    std::vector<ExpressionPtr> terms;
    do {
        checkChain(terms.size());
        terms.push_back(isAnd ? inversion() : chain(true));
    } while (reader_.takeKeyword(isAnd ? "AND" : "OR"));
    if (terms.size() == 1) {
        return std::move(terms.front());
    }
    return std::make_unique<LogicalChain>(at, isAnd, std::move(terms));
}

ExpressionPtr ExpressionParser::inversion() {
    const std::size_t at = reader_.peek().begin;
    if (reader_.takeKeyword("NOT")) {
        const TokenReader::Level level(reader_);
        return std::make_unique<LogicalNot>(at, inversion());
    }
    return predicate();
}

ExpressionPtr ExpressionParser::predicate() {
    ExpressionPtr left = concatenation();
    const std::size_t at = reader_.peek().begin;
    if (comparisonOf(reader_.peek().kind)) {
        return comparison(std::move(left));
    }
    if (reader_.takeKeyword("IS")) {
        const bool negated = reader_.takeKeyword("NOT");
        reader_.expectKeyword("NULL");
        return std::make_unique<NullTest>(at, std::move(left), negated);
    }
    const bool negated = reader_.takeKeyword("NOT");
    if (reader_.takeKeyword("LIKE")) {
        return like(at, std::move(left), negated);
    }
    if (reader_.takeKeyword("BETWEEN")) {
        return between(at, std::move(left), negated);
    }
    if (reader_.takeKeyword("IN")) {
        return in(at, std::move(left), negated);
    }
    if (negated) {
        reader_.failExpected("LIKE, BETWEEN or IN");
    }
    return left;
}

ExpressionPtr ExpressionParser::comparison(ExpressionPtr left) {
    const Token symbol = reader_.take();
    ExpressionPtr right = concatenation();
    if (comparisonOf(reader_.peek().kind)) {
        reader_.fail(reader_.peek().begin, "a comparison of a comparison needs parentheses");
    }
    return std::make_unique<Comparison>(symbol.begin, *comparisonOf(symbol.kind), std::move(left),
                                        std::move(right));
}

ExpressionPtr ExpressionParser::like(std::size_t at, ExpressionPtr operand, bool negated) {
    ExpressionPtr pattern = concatenation();
    return std::make_unique<LikeTest>(at, std::move(operand), std::move(pattern), negated);
}

ExpressionPtr ExpressionParser::between(std::size_t at, ExpressionPtr operand, bool negated) {
    ExpressionPtr low = concatenation();
    reader_.expectKeyword("AND");
    ExpressionPtr high = concatenation();
    return std::make_unique<BetweenTest>(at, std::move(operand), std::move(low), std::move(high),
                                         negated);
}

ExpressionPtr ExpressionParser::in(std::size_t at, ExpressionPtr operand, bool negated) {
    if (reader_.at(TokenKind::OpenParenthesis) && reader_.atKeyword("SELECT", 1)) {
        return std::make_unique<InSelectTest>(at, std::move(operand), subSelect(), negated);
    }
    reader_.expect(TokenKind::OpenParenthesis, "(");
    std::vector<ExpressionPtr> items;
    do {
        items.push_back(expression());
    } while (reader_.takeIf(TokenKind::Comma));
    reader_.expect(TokenKind::CloseParenthesis, "a comma or )");
    return std::make_unique<InListTest>(at, std::move(operand), std::move(items), negated);
}

ExpressionPtr ExpressionParser::concatenation() {
    const std::size_t at = reader_.peek().begin;
    std::vector<ExpressionPtr> parts;
    do {
        checkChain(parts.size());
        parts.push_back(sum());
    } while (reader_.takeIf(TokenKind::Ampersand));
    if (parts.size() == 1) {
        return std::move(parts.front());
    }
    return std::make_unique<Concatenation>(at, std::move(parts));
}

ExpressionPtr ExpressionParser::sum() {
    ExpressionPtr left = product();
    while (reader_.at(TokenKind::Plus) || reader_.at(TokenKind::Minus)) {
        reader_.countArithmetic();
        const Token symbol = reader_.take();
        const auto operation =
            symbol.kind == TokenKind::Plus ? ArithmeticOperator::Add : ArithmeticOperator::Subtract;
        left = std::make_unique<Arithmetic>(symbol.begin, operation, std::move(left), product());
    }
    return left;
}

ExpressionPtr ExpressionParser::product() {
    ExpressionPtr left = signedValue();
    while (reader_.at(TokenKind::Star) || reader_.at(TokenKind::Slash)) {
        reader_.countArithmetic();
        const Token symbol = reader_.take();
        const auto operation = symbol.kind == TokenKind::Star ? ArithmeticOperator::Multiply
                                                              : ArithmeticOperator::Divide;
        left =
            std::make_unique<Arithmetic>(symbol.begin, operation, std::move(left), signedValue());
    }
    return left;
}

ExpressionPtr ExpressionParser::signedValue() {
    const std::size_t at = reader_.peek().begin;
    if (reader_.takeIf(TokenKind::Minus)) {
        const TokenReader::Level level(reader_);
        return std::make_unique<Negation>(at, signedValue());
    }
    if (reader_.takeIf(TokenKind::Plus)) {
        const TokenReader::Level level(reader_);
        return signedValue();
    }
    return primary();
}

ExpressionPtr ExpressionParser::primary() {
    switch (reader_.peek().kind) {
    case TokenKind::Number:
    case TokenKind::Text:
    case TokenKind::DateTime:
        return literal();
    case TokenKind::OpenParenthesis:
        return parenthesized();
    default:
        break;
    }
    if (reader_.atKeyword("EXISTS")) {
        return exists();
    }
    if (reader_.at(TokenKind::Word) && isConstant(reader_.peek().text)) {
        return constant();
    }
    if (reader_.atName() && reader_.peek(1).kind == TokenKind::OpenParenthesis) {
        return aggregate();
    }
    if (!reader_.atName()) {
        reader_.failExpected("a value");
    }
    return column();
}

ExpressionPtr ExpressionParser::literal() {
    const LiteralKind kind = reader_.literalValue().kind;
    const std::size_t ordinal = reader_.literalOrdinal();
    const Token token = reader_.take();
    return std::make_unique<Literal>(token.begin, kind, ordinal, reader_.sourceOf(token));
}

ExpressionPtr ExpressionParser::constant() {
    const Token token = reader_.take();
    const ConstantValue value = sameName(token.text, "TRUE")    ? ConstantValue::True
                                : sameName(token.text, "FALSE") ? ConstantValue::False
                                                                : ConstantValue::Null;
    return std::make_unique<Constant>(token.begin, value);
}

std::unique_ptr<ColumnName> ExpressionParser::column() {
    const std::size_t at = reader_.peek().begin;
    std::string first = reader_.expectName("a column");
    if (!reader_.takeIf(TokenKind::Dot)) {
        return std::make_unique<ColumnName>(at, std::string(), std::move(first));
    }
    // Behind the dot even a keyword is a name.
    std::string second = reader_.at(TokenKind::Word) ? std::string(reader_.take().text)
                                                     : reader_.expectName("a column");
    return std::make_unique<ColumnName>(at, std::move(first), std::move(second));
}

std::unique_ptr<Select> ExpressionParser::subSelect() {
    const TokenReader::Level level(reader_);
    reader_.expect(TokenKind::OpenParenthesis, "(");
    std::unique_ptr<Select> select = selects_.select();
    reader_.expect(TokenKind::CloseParenthesis, ")");
    return select;
}

ExpressionPtr ExpressionParser::exists() {
    const std::size_t at = reader_.take().begin;
    return std::make_unique<ExistsTest>(at, subSelect());
}

ExpressionPtr ExpressionParser::parenthesized() {
    reader_.expect(TokenKind::OpenParenthesis, "(");
    if (reader_.atKeyword("SELECT")) {
        reader_.fail(reader_.peek().begin, "a select stands behind IN or EXISTS only");
    }
    ExpressionPtr inside = expression();
    reader_.expect(TokenKind::CloseParenthesis, ")");
    return inside;
}

ExpressionPtr ExpressionParser::aggregate() {
    const Token name = reader_.take();
    const auto function = aggregateOf(name.text);
    if (!function) {
        reader_.fail(name.begin, "no such function; there are Count, Sum, Min, Max and Avg");
    }
    reader_.expect(TokenKind::OpenParenthesis, "(");
    ExpressionPtr argument;
    if (*function != AggregateFunction::Count || !reader_.takeIf(TokenKind::Star)) {
        argument = expression();
    }
    reader_.expect(TokenKind::CloseParenthesis, ")");
    return std::make_unique<Aggregate>(name.begin, *function, std::move(argument));
}

} // namespace kintar::companion::dialect
