// The tokens of one statement, read from left to right by the parsers.
#pragma once

#include "companion/dialect/Lexer.h"

#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

/// Parentheses, sub-selects, NOT and signs that may stand inside one another.
inline constexpr std::size_t maximumNesting = 150;
/// Terms of one chain: `a AND b AND …`, `a & b & …`.
inline constexpr std::size_t maximumChain = 500;
/// Additions, subtractions, multiplications and divisions of one statement.
inline constexpr std::size_t maximumArithmetic = 500;

/// Reads tokens and reports what was expected where. Names what it found by kind only, never by its
/// text: that could be a value.
class TokenReader {
public:
    /// `statement` must outlive the reader. Throws as the lexer does.
    explicit TokenReader(std::string_view statement);

    [[nodiscard]] const Token& peek(std::size_t ahead = 0) const;
    [[nodiscard]] bool at(TokenKind kind) const { return peek().kind == kind; }
    /// Whether the token `ahead` is this keyword.
    [[nodiscard]] bool atKeyword(std::string_view keyword, std::size_t ahead = 0) const;
    /// Whether a name stands here.
    [[nodiscard]] bool atName() const;

    Token take();
    bool takeIf(TokenKind kind);
    bool takeKeyword(std::string_view keyword);
    void expect(TokenKind kind, std::string_view what);
    void expectKeyword(std::string_view keyword);
    std::string expectName(std::string_view what);

    [[noreturn]] void failExpected(std::string_view what) const;
    [[noreturn]] void fail(std::size_t offset, const std::string& text) const;

    /// The value of the literal token that stands here, and its number among the literals.
    [[nodiscard]] LiteralValue literalValue() const { return lexer_.value(peek()); }
    [[nodiscard]] std::size_t literalOrdinal() const;
    [[nodiscard]] std::string sourceOf(const Token& token) const {
        return std::string(statement_.substr(token.begin, token.end - token.begin));
    }

    /// Counts an operation of arithmetic; fails at too many.
    void countArithmetic();

    /// Counts a level of nesting for as long as it lives; fails at too many.
    class Level {
    public:
        explicit Level(TokenReader& reader);
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;
        ~Level() { --reader_.nesting_; }

    private:
        TokenReader& reader_;
    };

private:
    std::string_view statement_;
    Lexer lexer_;
    std::vector<Token> tokens_;
    std::vector<std::size_t> ordinals_; ///< literals before each token
    std::size_t position_ = 0;
    std::size_t nesting_ = 0;
    std::size_t arithmetic_ = 0;
};

} // namespace kintar::companion::dialect
