#include "companion/dialect/Lexer.h"

#include <gtest/gtest.h>

namespace kintar::companion::dialect {
namespace {

LiftedStatement lift(std::string_view sql) {
    LiftedStatement lifted;
    liftLiterals(sql, lifted);
    return lifted;
}

TEST(LiftLiterals, StatementsThatDifferInTheirValuesHaveOneShape) {
    const auto shape = lift("SELECT ID FROM T WHERE a = 17 AND b = 'O''Brien' AND c = #3/14/2012#");
    EXPECT_EQ(shape.shape,
              lift("SELECT ID FROM T WHERE a = -5 AND b = '' AND c = #12/31/9999 23:59:59#").shape);
    EXPECT_EQ(shape.values.size(), 3U);
}

TEST(LiftLiterals, StatementsThatDifferInTheKindOfAValueDoNot) {
    const std::string whole = lift("x = 1").shape;
    EXPECT_NE(whole, lift("x = 1.5").shape);
    EXPECT_NE(whole, lift("x = '1'").shape);
    EXPECT_NE(whole, lift("x = #1/1/2012#").shape);
    EXPECT_NE(whole, lift("x = 99999999999999999999").shape);
    EXPECT_NE(whole, lift("y = 1").shape);
}

TEST(LiftLiterals, DigitsInNamesAreNoValues) {
    EXPECT_TRUE(lift("SELECT Inout1, [2nd], T2.x3 FROM T2").values.empty());
}

TEST(LiftLiterals, ASignBelongsToItsNumberOnlyWhereNoValueStandsBefore) {
    EXPECT_EQ(lift("x = -5").values.at(0).integer, -5);
    EXPECT_EQ(lift("BETWEEN -5 AND -6").values.at(1).integer, -6);
    EXPECT_EQ(lift("x -5").values.at(0).integer, 5);
    EXPECT_EQ(lift("[x]-5").values.at(0).integer, 5);
    EXPECT_EQ(lift("(x)-5").values.at(0).integer, 5);
    EXPECT_EQ(lift("3-5").values.at(1).integer, 5);
    EXPECT_EQ(lift("True -5").values.at(0).integer, 5);
}

TEST(LiftLiterals, TextsComeWithoutTheirQuotesAndDoubledOnesOnce) {
    EXPECT_EQ(lift("'O''Brien'").values.at(0).text(), "O'Brien");
    EXPECT_EQ(lift("''''").values.at(0).text(), "'");
    EXPECT_EQ(lift("\"a\"\"b'\"").values.at(0).text(), "a\"b'");
    EXPECT_EQ(lift("'a\"b'").values.at(0).text(), "a\"b");
    EXPECT_EQ(lift("''").values.at(0).text(), "");
}

TEST(LiftLiterals, NumbersKeepEveryDigit) {
    EXPECT_EQ(lift("9223372036854775807").values.at(0).kind, LiteralKind::Integer);
    EXPECT_EQ(lift("9223372036854775808").values.at(0).kind, LiteralKind::Decimal);
    EXPECT_EQ(lift("12345678901234567890").values.at(0).raw, "12345678901234567890");
    EXPECT_EQ(lift(".5").values.at(0).real(), 0.5);
    EXPECT_EQ(lift("1.5e3").values.at(0).real(), 1500);
}

TEST(LiftLiterals, AStatementThatIsTooLongIsRefused) {
    const std::string longest = "'" + std::string(maximumStatementLength - 2, 'x') + "'";
    EXPECT_EQ(lift(longest).values.size(), 1U);
    EXPECT_THROW(lift(longest + " "), DatabaseError);
}

TEST(LiftLiterals, ANulCharacterIsRefusedWhereverItStands) {
    for (const std::string_view sql :
         {std::string_view("\0", 1), std::string_view("SELECT '\0'", 10),
          std::string_view("SELECT [\0]", 10), std::string_view("SELECT ID FROM IO\0", 18)}) {
        EXPECT_THROW(lift(sql), DatabaseError);
    }
}

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
