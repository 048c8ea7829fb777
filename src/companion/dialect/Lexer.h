// The tokens of a statement.
#pragma once

#include "companion/DatabaseError.h"
#include "companion/dialect/LiteralValue.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kintar::companion::dialect {

/// Bytes of a statement. A longer one is refused.
inline constexpr std::size_t maximumStatementLength = 1024UL * 1024;
/// Bytes of a statement besides the contents of its texts: these are bound, not parsed.
inline constexpr std::size_t maximumLengthBesideTexts = 65536;
/// Characters of a name.
inline constexpr std::size_t maximumNameLength = 64;

enum class TokenKind : std::uint8_t {
    End,
    Word,
    BracketedName, ///< without its brackets
    Number,        ///< with its sign, where that is no operator
    Text,          ///< without its quotes
    DateTime,      ///< without its marks
    Comma,
    Dot,
    OpenParenthesis,
    CloseParenthesis,
    Star,
    Plus,
    Minus,
    Slash,
    Ampersand,
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Semicolon,
};

/// A token. `begin` and `end` are bytes of the statement, quotes, brackets and marks included.
struct Token {
    TokenKind kind = TokenKind::End;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::string_view text;
};

/// Gives the tokens of a statement in order, without keeping any. Throws DatabaseError (Syntax) at
/// what is no token: a control character, invalid UTF-8, an open quote, an impossible date.
class Lexer {
public:
    /// `statement` must outlive the lexer and its tokens.
    explicit Lexer(std::string_view statement);

    /// The next token; End again and again behind the last.
    Token next();

    /// What may begin a number, after the tokens read so far.
    struct Signs {
        bool minus = false;
        bool point = false;
    };
    [[nodiscard]] Signs signs() const;
    /// The Number, Text or DateTime token at `begin`, where a token has to begin; End where there
    /// is none. `signs` are those that stand there.
    Token literalAt(std::size_t begin, Signs signs);
    /// The value of a Number, Text or DateTime token that came from `next`.
    [[nodiscard]] LiteralValue value(const Token& token) const;

private:
    [[noreturn]] void fail(std::size_t offset, const std::string& text) const;
    Token make(TokenKind kind, std::size_t begin, std::size_t end);
    Token word(std::size_t begin);
    Token number(std::size_t begin);
    Token quoted(std::size_t begin);
    Token bracketed(std::size_t begin);
    Token dateTime(std::size_t begin);
    Token symbol(std::size_t begin);
    [[nodiscard]] std::size_t digits(std::size_t at) const;
    [[nodiscard]] bool minusBeginsNumber() const;
    [[nodiscard]] bool pointBeginsNumber() const;
    [[nodiscard]] bool digitFollows(std::size_t begin) const;
    [[nodiscard]] char at(std::size_t offset) const {
        return offset < statement_.size() ? statement_[offset] : '\0';
    }

    std::string_view statement_;
    std::size_t position_ = 0;
    std::size_t textBytes_ = 0;
    Token last_;
};

} // namespace kintar::companion::dialect
