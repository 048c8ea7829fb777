#include "companion/dialect/TokenReader.h"

#include "companion/dialect/Keyword.h"

#include <algorithm>

namespace kintar::companion::dialect {

namespace {

bool isLiteral(TokenKind kind) {
    return kind == TokenKind::Number || kind == TokenKind::Text || kind == TokenKind::DateTime;
}

std::string_view describe(const Token& token) {
    switch (token.kind) {
    case TokenKind::End:
        return "the end of the statement";
    case TokenKind::Word:
        return isReserved(token.text) ? "a keyword" : "a name";
    case TokenKind::BracketedName:
        return "a name";
    case TokenKind::Number:
        return "a number";
    case TokenKind::Text:
        return "a text";
    case TokenKind::DateTime:
        return "a date";
    case TokenKind::OpenParenthesis:
        return "(";
    case TokenKind::CloseParenthesis:
        return ")";
    case TokenKind::Comma:
        return "a comma";
    case TokenKind::Semicolon:
        return "a semicolon";
    default:
        return "an operator";
    }
}

} // namespace

TokenReader::TokenReader(std::string_view statement) : statement_(statement), lexer_(statement) {
    std::size_t literals = 0;
    do {
        ordinals_.push_back(literals);
        tokens_.push_back(lexer_.next());
        literals += isLiteral(tokens_.back().kind) ? 1 : 0;
    } while (tokens_.back().kind != TokenKind::End);
}

const Token& TokenReader::peek(std::size_t ahead) const {
    return tokens_[std::min(position_ + ahead, tokens_.size() - 1)];
}

bool TokenReader::atKeyword(std::string_view keyword, std::size_t ahead) const {
    const Token& token = peek(ahead);
    return token.kind == TokenKind::Word && sameName(token.text, keyword);
}

bool TokenReader::atName() const {
    return at(TokenKind::BracketedName) || (at(TokenKind::Word) && !isReserved(peek().text));
}

Token TokenReader::take() {
    const Token token = peek();
    position_ = std::min(position_ + 1, tokens_.size() - 1);
    return token;
}

bool TokenReader::takeIf(TokenKind kind) {
    const bool found = at(kind);
    if (found) {
        take();
    }
    return found;
}

bool TokenReader::takeKeyword(std::string_view keyword) {
    const bool found = atKeyword(keyword);
    if (found) {
        take();
    }
    return found;
}

void TokenReader::expect(TokenKind kind, std::string_view what) {
    if (!takeIf(kind)) {
        failExpected(what);
    }
}

void TokenReader::expectKeyword(std::string_view keyword) {
    if (!takeKeyword(keyword)) {
        failExpected(keyword);
    }
}

std::string TokenReader::expectName(std::string_view what) {
    if (!atName()) {
        failExpected(what);
    }
    return std::string(take().text);
}

void TokenReader::failExpected(std::string_view what) const {
    fail(peek().begin,
         "expected " + std::string(what) + ", found " + std::string(describe(peek())));
}

void TokenReader::fail(std::size_t offset, const std::string& text) const {
    throw DatabaseError::inStatement(ErrorKind::Syntax, statement_, offset, text);
}

std::size_t TokenReader::literalOrdinal() const {
    return ordinals_[position_];
}

void TokenReader::countArithmetic() {
    if (++arithmetic_ > maximumArithmetic) {
        fail(peek().begin,
             "more than " + std::to_string(maximumArithmetic) + " operations of arithmetic");
    }
}

TokenReader::Level::Level(TokenReader& reader) : reader_(reader) {
    if (++reader_.nesting_ > maximumNesting) {
        --reader_.nesting_;
        reader_.fail(reader_.peek().begin,
                     "nested more than " + std::to_string(maximumNesting) + " levels deep");
    }
}

} // namespace kintar::companion::dialect
