#include "companion/dialect/Lexer.h"

#include <gtest/gtest.h>

namespace kintar::companion::dialect {
namespace {

TEST(Lexer, TellsWhereEachTokenStands) {
    Lexer lexer("a <> [b c]");
    EXPECT_EQ(lexer.next().begin, 0U);
    const Token notEqual = lexer.next();
    EXPECT_EQ(notEqual.kind, TokenKind::NotEqual);
    EXPECT_EQ(notEqual.begin, 2U);
    const Token name = lexer.next();
    EXPECT_EQ(name.text, "b c");
    EXPECT_EQ(name.begin, 5U);
    EXPECT_EQ(name.end, 10U);
    EXPECT_EQ(lexer.next().kind, TokenKind::End);
    EXPECT_EQ(lexer.next().kind, TokenKind::End);
}

} // namespace
} // namespace kintar::companion::dialect
