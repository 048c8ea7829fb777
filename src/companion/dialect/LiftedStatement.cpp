#include "companion/dialect/LiftedStatement.h"

namespace kintar::companion::dialect {

namespace {

bool isLiteral(TokenKind kind) {
    return kind == TokenKind::Number || kind == TokenKind::Text || kind == TokenKind::DateTime;
}

/// A control character stands for a literal of a kind: the lexer lets none through itself.
char markOf(LiteralKind kind) {
    return static_cast<char>(1 + static_cast<int>(kind));
}

/// Whether a token ends with this byte whatever literal comes next.
bool endsItsToken(char last) {
    return std::string_view(" \t\r\n(,=<>&*+/").find(last) != std::string_view::npos;
}

} // namespace

void liftLiterals(std::string_view statement, LiftedStatement& lifted) {
    Lexer lexer(statement);
    lifted.shape.clear();
    lifted.values.clear();
    std::size_t copied = 0;
    for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next()) {
        if (!isLiteral(token.kind)) {
            continue;
        }
        lifted.shape.append(statement, copied, token.begin - copied);
        lifted.values.push_back(lexer.value(token));
        lifted.shape += markOf(lifted.values.back().kind);
        copied = token.end;
    }
    lifted.shape.append(statement, copied);
}

ShapeOutline::ShapeOutline(std::string_view statement) {
    Lexer lexer(statement);
    usable_ = true;
    std::size_t lifted = 0; // bytes that stand in the statement and not in the shape
    Lexer::Signs signs = lexer.signs();
    for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next()) {
        if (isLiteral(token.kind)) {
            usable_ = usable_ && token.begin > 0 && endsItsToken(statement[token.begin - 1]);
            places_.push_back({token.begin - lifted, signs});
            lifted += token.end - token.begin - 1;
        }
        signs = lexer.signs();
    }
}

bool ShapeOutline::lift(std::string_view shape, std::string_view statement,
                        std::vector<LiteralValue>& values) const {
    // What stands before the first literal tells most shapes apart at once.
    const auto matches = [&](std::size_t from, std::size_t end, std::size_t at) {
        return statement.substr(at, end - from) == shape.substr(from, end - from);
    };
    if (!usable_ || !matches(0, places_.empty() ? shape.size() : places_.front().mark, 0)) {
        return false;
    }
    Lexer lexer(statement);
    values.clear();
    std::size_t from = 0;
    std::size_t at = 0;
    for (const Place& place : places_) {
        if (!matches(from, place.mark, at)) {
            return false;
        }
        const Token token = lexer.literalAt(at + place.mark - from, place.signs);
        if (token.kind == TokenKind::End) {
            return false;
        }
        values.push_back(lexer.value(token));
        if (markOf(values.back().kind) != shape[place.mark]) {
            return false;
        }
        from = place.mark + 1;
        at = token.end;
    }
    return statement.substr(at) == shape.substr(from);
}

} // namespace kintar::companion::dialect
