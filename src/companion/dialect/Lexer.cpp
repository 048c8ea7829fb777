#include "companion/dialect/Lexer.h"

#include "base/Unicode.h"
#include "companion/dialect/Keyword.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kintar::companion::dialect {

namespace {

enum class ByteClass : std::uint8_t { Other, Blank, Letter, Digit };

constexpr std::array<ByteClass, 256> byteClasses = [] {
    std::array<ByteClass, 256> classes{};
    for (std::size_t byte = 0; byte < 256; ++byte) {
        const bool letter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                            byte == '_' || byte >= 0x80;
        if (byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n') {
            classes[byte] = ByteClass::Blank;
        } else if (byte >= '0' && byte <= '9') {
            classes[byte] = ByteClass::Digit;
        } else if (letter) {
            classes[byte] = ByteClass::Letter;
        }
    }
    return classes;
}();

ByteClass classOf(char byte) {
    return byteClasses[static_cast<unsigned char>(byte)];
}

bool isNameByte(char byte) {
    return classOf(byte) == ByteClass::Letter || classOf(byte) == ByteClass::Digit;
}

/// The length of the valid UTF-8 sequence at the start of `bytes`, 0 where there is none.
std::size_t sequenceLength(std::string_view bytes) {
    const auto byte = [&](std::size_t at) {
        return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0U;
    };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    for (std::size_t at = 1; at < length; ++at) {
        if ((byte(at) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    const bool tooShort = (lead & 0xC0U) == 0x80U || lead == 0xC0 || lead == 0xC1 ||
                          (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    const bool outside = lead > 0xF4 || (lead == 0xF4 && byte(1) > 0x8F);
    const bool surrogate = lead == 0xED && byte(1) > 0x9F;
    return tooShort || outside || surrogate ? 0 : length;
}

/// The first byte that no statement may hold; its size where there is none.
std::size_t firstForbiddenByte(std::string_view statement) {
    if (unicode::isAscii(statement) && statement.find('\0') == std::string_view::npos) {
        return statement.size();
    }
    std::size_t at = 0;
    while (at < statement.size()) {
        const std::size_t length = sequenceLength(statement.substr(at));
        if (length == 0 || statement[at] == '\0') {
            return at;
        }
        at += length;
    }
    return at;
}

TokenKind singleSymbol(char c) {
    switch (c) {
    case ',':
        return TokenKind::Comma;
    case '.':
        return TokenKind::Dot;
    case '(':
        return TokenKind::OpenParenthesis;
    case ')':
        return TokenKind::CloseParenthesis;
    case '*':
        return TokenKind::Star;
    case '+':
        return TokenKind::Plus;
    case '-':
        return TokenKind::Minus;
    case '/':
        return TokenKind::Slash;
    case '&':
        return TokenKind::Ampersand;
    case '=':
        return TokenKind::Equal;
    case ';':
        return TokenKind::Semicolon;
    default:
        return TokenKind::End;
    }
}

} // namespace

Lexer::Lexer(std::string_view statement) : statement_(statement) {
    if (statement.size() > maximumStatementLength) {
        fail(maximumStatementLength,
             "the statement is longer than " + std::to_string(maximumStatementLength) + " bytes");
    }
    const std::size_t forbidden = firstForbiddenByte(statement);
    if (forbidden < statement.size()) {
        fail(forbidden, statement[forbidden] == '\0' ? "a NUL character" : "invalid UTF-8");
    }
}

void Lexer::fail(std::size_t offset, const std::string& text) const {
    throw DatabaseError::inStatement(ErrorKind::Syntax, statement_, offset, text);
}

Token Lexer::make(TokenKind kind, std::size_t begin, std::size_t end) {
    if (end - textBytes_ > maximumLengthBesideTexts) {
        fail(begin, "the statement has more than " + std::to_string(maximumLengthBesideTexts) +
                        " bytes beside its texts");
    }
    last_ = {kind, begin, end, statement_.substr(begin, end - begin)};
    position_ = end;
    return last_;
}

Token Lexer::next() {
    std::size_t begin = position_;
    while (begin < statement_.size() && classOf(statement_[begin]) == ByteClass::Blank) {
        ++begin;
    }
    if (begin == statement_.size()) {
        return make(TokenKind::End, begin, begin);
    }
    const char c = statement_[begin];
    switch (classOf(c)) {
    case ByteClass::Letter:
        return word(begin);
    case ByteClass::Digit:
        return number(begin);
    default:
        break;
    }
    switch (c) {
    case '\'':
    case '"':
        return quoted(begin);
    case '[':
        return bracketed(begin);
    case '#':
        return dateTime(begin);
    case '-':
        return digitFollows(begin) && minusBeginsNumber() ? number(begin) : symbol(begin);
    case '.':
        return digitFollows(begin) && pointBeginsNumber() ? number(begin) : symbol(begin);
    default:
        return symbol(begin);
    }
}

Token Lexer::word(std::size_t begin) {
    std::size_t end = begin + 1;
    while (end < statement_.size() && isNameByte(statement_[end])) {
        ++end;
    }
    if (end - begin > maximumNameLength) {
        fail(begin, "a name is longer than " + std::to_string(maximumNameLength) + " bytes");
    }
    return make(TokenKind::Word, begin, end);
}

std::size_t Lexer::digits(std::size_t at) const {
    while (at < statement_.size() && classOf(statement_[at]) == ByteClass::Digit) {
        ++at;
    }
    return at;
}

bool Lexer::digitFollows(std::size_t begin) const {
    return classOf(at(begin + 1)) == ByteClass::Digit;
}

bool Lexer::pointBeginsNumber() const {
    return last_.kind != TokenKind::Word && last_.kind != TokenKind::BracketedName;
}

bool Lexer::minusBeginsNumber() const {
    switch (last_.kind) {
    case TokenKind::BracketedName:
    case TokenKind::Number:
    case TokenKind::Text:
    case TokenKind::DateTime:
    case TokenKind::CloseParenthesis:
        return false;
    case TokenKind::Word:
        return isReserved(last_.text) && !isConstant(last_.text);
    default:
        return true;
    }
}

Lexer::Signs Lexer::signs() const {
    return {minusBeginsNumber(), pointBeginsNumber()};
}

Token Lexer::literalAt(std::size_t begin, Signs signs) {
    const char c = at(begin);
    switch (c) {
    case '\'':
    case '"':
        return quoted(begin);
    case '#':
        return dateTime(begin);
    default:
        break;
    }
    const bool signedNumber =
        ((c == '-' && signs.minus) || (c == '.' && signs.point)) && digitFollows(begin);
    return classOf(c) == ByteClass::Digit || signedNumber ? number(begin) : Token();
}

Token Lexer::number(std::size_t begin) {
    std::size_t end = digits(begin + (at(begin) == '-' ? 1 : 0));
    if (at(end) == '.') {
        end = digits(end + 1);
    }
    if ((at(end) | 0x20) == 'e') {
        const std::size_t exponent = end + (at(end + 1) == '-' || at(end + 1) == '+' ? 2 : 1);
        const std::size_t exponentEnd = digits(exponent);
        if (exponentEnd == exponent) {
            fail(end, "a number without the digits of its exponent");
        }
        end = exponentEnd;
    }
    if (end < statement_.size() && (isNameByte(statement_[end]) || statement_[end] == '.')) {
        fail(end, "a number runs into what follows it");
    }
    return make(TokenKind::Number, begin, end);
}

Token Lexer::quoted(std::size_t begin) {
    const char quote = statement_[begin];
    std::size_t end = begin + 1;
    while (true) {
        end = statement_.find(quote, end);
        if (end == std::string_view::npos) {
            fail(begin, "a text has no closing quote");
        }
        if (at(end + 1) != quote) {
            break;
        }
        end += 2;
    }
    textBytes_ += end - begin - 1;
    Token token = make(TokenKind::Text, begin, end + 1);
    token.text = statement_.substr(begin + 1, end - begin - 1);
    return token;
}

Token Lexer::bracketed(std::size_t begin) {
    const std::size_t end = statement_.find(']', begin);
    if (end == std::string_view::npos) {
        fail(begin, "a name has no closing bracket");
    }
    const std::string_view name = statement_.substr(begin + 1, end - begin - 1);
    if (name.empty() || name.size() > maximumNameLength) {
        fail(begin, "a name in brackets has 1 to " + std::to_string(maximumNameLength) + " bytes");
    }
    for (std::size_t offset = 0; offset < name.size(); ++offset) {
        const auto c = static_cast<unsigned char>(name[offset]);
        if (c < ' ' || c == 0x7F ||
            std::string_view("[.!`\"").find(name[offset]) != std::string_view::npos) {
            fail(begin + 1 + offset, "a character that no name may hold");
        }
    }
    Token token = make(TokenKind::BracketedName, begin, end + 1);
    token.text = name;
    return token;
}

Token Lexer::dateTime(std::size_t begin) {
    const std::size_t end = statement_.find('#', begin + 1);
    if (end == std::string_view::npos) {
        fail(begin, "a date has no closing #");
    }
    Token token = make(TokenKind::DateTime, begin, end + 1);
    token.text = statement_.substr(begin + 1, end - begin - 1);
    return token;
}

Token Lexer::symbol(std::size_t begin) {
    const char c = statement_[begin];
    const char following = at(begin + 1);
    if (c == '<' && (following == '>' || following == '=')) {
        return make(following == '>' ? TokenKind::NotEqual : TokenKind::LessOrEqual, begin,
                    begin + 2);
    }
    if (c == '>' && following == '=') {
        return make(TokenKind::GreaterOrEqual, begin, begin + 2);
    }
    if (c == '<' || c == '>') {
        return make(c == '<' ? TokenKind::Less : TokenKind::Greater, begin, begin + 1);
    }
    const TokenKind kind = singleSymbol(c);
    if (kind == TokenKind::End) {
        fail(begin, "a character that no statement may hold here");
    }
    return make(kind, begin, begin + 1);
}

LiteralValue Lexer::value(const Token& token) const {
    LiteralValue value;
    value.raw = token.text;
    if (token.kind == TokenKind::Number) {
        const auto [end, error] = std::from_chars(
            token.text.data(), token.text.data() + token.text.size(), value.integer);
        const bool whole = error == std::errc() && end == token.text.data() + token.text.size();
        value.kind = whole ? LiteralKind::Integer : LiteralKind::Decimal;
        if (!whole && !std::isfinite(value.real())) {
            fail(token.begin, "a number too large");
        }
    } else if (token.kind == TokenKind::Text) {
        value.kind = LiteralKind::Text;
        value.hasDoubledQuotes = token.text.find(statement_[token.begin]) != std::string_view::npos;
    } else {
        value.kind = LiteralKind::DateTime;
        if (!readDateTimeLiteral(token.text, value.dateTime)) {
            fail(token.begin,
                 "no date: expected month/day/year with or without hours:minutes:seconds");
        }
    }
    return value;
}

} // namespace kintar::companion::dialect
