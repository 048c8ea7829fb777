#include "companion/dialect/LiftedStatement.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <optional>
#include <random>

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

TEST(LiftLiterals, OnlyTextsMayBeLong) {
    const std::string text = "'" + std::string(100000, '\'') + "'";
    const std::string rest(maximumLengthBesideTexts - 2, ' ');
    EXPECT_EQ(lift(rest + text).values.size(), 1U);
    EXPECT_EQ(lift(text + rest).values.size(), 1U);
    EXPECT_THROW(lift(rest + " " + text), DatabaseError);
    EXPECT_THROW(lift(text + rest + " "), DatabaseError);
    EXPECT_THROW(lift(std::string(maximumLengthBesideTexts, '(') + "1"), DatabaseError);
}

TEST(LiftLiterals, ManyEmptyTextsAreRefused) {
    std::string texts;
    while (texts.size() <= maximumLengthBesideTexts) {
        texts += "''\"\"";
    }
    EXPECT_THROW(lift(texts), DatabaseError);
}

TEST(LiftLiterals, ANulCharacterIsRefusedWhereverItStands) {
    for (const std::string_view sql :
         {std::string_view("\0", 1), std::string_view("SELECT '\0'", 10),
          std::string_view("SELECT [\0]", 10), std::string_view("SELECT ID FROM IO\0", 18)}) {
        EXPECT_THROW(lift(sql), DatabaseError);
    }
}

/// The literals of `statement`, taken by the outline of `known`; nothing where it takes none.
std::optional<std::vector<LiteralValue>> liftLike(std::string_view known,
                                                  std::string_view statement) {
    std::vector<LiteralValue> values;
    if (ShapeOutline(known).lift(lift(known).shape, statement, values)) {
        return values;
    }
    return std::nullopt;
}

TEST(ShapeOutline, TakesAStatementThatDiffersInItsValuesOnly) {
    const auto values =
        liftLike("SELECT x FROM T WHERE a = 17 AND b IN (1,'x') AND c > #3/14/2012#",
                 "SELECT x FROM T WHERE a = -5 AND b IN (22,'O''B') AND c > "
                 "#12/31/9999 23:59:59#");
    ASSERT_TRUE(values);
    ASSERT_EQ(values->size(), 4U);
    EXPECT_EQ(values->at(0).integer, -5);
    EXPECT_EQ(values->at(1).integer, 22);
    EXPECT_EQ(values->at(2).text(), "O'B");
    EXPECT_EQ(values->at(3).dateTime.iso(), "9999-12-31T23:59:59");
}

TEST(ShapeOutline, TakesNoStatementOfAnotherShape) {
    for (const std::string_view other :
         {"SELECT x FROM T WHERE b = 17", "SELECT x FROM T WHERE a = 1.5",
          "SELECT x FROM T WHERE a = '17'", "SELECT x FROM T WHERE a = b",
          "SELECT x FROM T WHERE a = 17 AND b = 1",
          "SELECT x FROM T WHERE a = ", "SELECT x FROM T WHERE a =  17", "SELECT x FROM T", ""}) {
        EXPECT_FALSE(liftLike("SELECT x FROM T WHERE a = 17", other)) << other;
    }
}

TEST(ShapeOutline, TakesNothingWhereALiteralCouldBelongToWhatStandsBeforeIt) {
    EXPECT_FALSE(liftLike("SELECT-1 FROM T", "SELECT5 FROM T"));
    EXPECT_FALSE(liftLike("SELECT-1 FROM T", "SELECT-2 FROM T"));
    EXPECT_FALSE(liftLike("a IN('x'\"y\")", "a IN(\"x\"\"y\")"));
    EXPECT_FALSE(liftLike("x-5", "x--5"));
}

TEST(ShapeOutline, ASignBelongsToItsNumberWhereItDoesForTheLexer) {
    EXPECT_EQ(liftLike("a = 5", "a = -5")->at(0).integer, -5);
    EXPECT_FALSE(liftLike("a 5", "a -5"));
    EXPECT_FALSE(liftLike("a 1.5", "a .5"));
    EXPECT_TRUE(liftLike("a = .5", "a = -1.5"));
}

TEST(ShapeOutline, ThrowsWhatTheLexerThrows) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"a = 'x'", "a = 'x"},
        {"a = 1", "a = 1x"},
        {"a = 1.5", "a = 1e"},
        {"a = 1", "a = 1e999"},
        {"a = #1/1/2012#", "a = #13/14/2012#"},
        {"a = 'x'", "a = '\xff'"}};
    for (const auto& [known, broken] : cases) {
        EXPECT_THROW(lift(broken), DatabaseError) << broken;
        EXPECT_THROW(liftLike(known, broken), DatabaseError) << broken;
    }
}

/// Words, signs and literals in any order, with and without blanks between them.
std::string randomStatement(std::mt19937& random) {
    static constexpr std::string_view parts[] = {
        "SELECT", "a", "[b c]", "True", "AND", "IN", " ",   " ",   " ",      " ",     "(",
        ")",      ",", "=",     "<",    ">",   "<>", "-",   "+",   ".",      "&",     "*",
        "/",      "1", "22",    "-3",   "4.5", ".6", "7e2", "'x'", "'y''z'", "\"w\"", "#1/2/2012#"};
    std::string statement;
    for (std::size_t left = 1 + random() % 9; left > 0; --left) {
        statement += parts[random() % std::size(parts)];
    }
    return statement;
}

bool isLiteral(TokenKind kind) {
    return kind == TokenKind::Number || kind == TokenKind::Text || kind == TokenKind::DateTime;
}

/// `statement` with something else in the place of each literal.
std::string withOtherLiterals(std::string_view statement, std::mt19937& random) {
    static constexpr std::string_view others[] = {"1",   "-1", "2.5", ".5",    "-.5",
                                                  "'a'", "''", "'''", "\"b\"", "#2/3/2013#",
                                                  "",    "x",  "5x",  "1."};
    std::string other;
    std::size_t copied = 0;
    Lexer lexer(statement);
    for (Token token = lexer.next(); token.kind != TokenKind::End; token = lexer.next()) {
        if (isLiteral(token.kind)) {
            other.append(statement, copied, token.begin - copied);
            other += others[random() % std::size(others)];
            copied = token.end;
        }
    }
    return other.append(statement, copied);
}

/// What `work` gives; nothing where it throws.
template <class Work>
auto unlessBroken(const Work& work) -> std::optional<decltype(work())> {
    try {
        return work();
    } catch (const DatabaseError&) {
        return std::nullopt;
    }
}

bool sameValues(const std::vector<LiteralValue>& a, const std::vector<LiteralValue>& b) {
    return std::ranges::equal(a, b, [](const LiteralValue& x, const LiteralValue& y) {
        return x.kind == y.kind && x.raw == y.raw && x.integer == y.integer &&
               x.hasDoubledQuotes == y.hasDoubledQuotes && x.dateTime == y.dateTime;
    });
}

TEST(ShapeOutline, NeverDiffersFromReadingEveryToken) {
    std::mt19937 random(20120314);
    int taken = 0;
    int broken = 0;
    for (int round = 0; round < 100000; ++round) {
        const std::string known = randomStatement(random);
        const auto other = unlessBroken([&] { return withOtherLiterals(known, random); });
        const auto shape = unlessBroken([&] { return lift(known).shape; });
        if (!other || !shape) {
            continue;
        }
        const auto whole = unlessBroken([&] { return lift(*other); });
        const auto byPieces = unlessBroken([&] { return liftLike(known, *other); });
        if (!byPieces) {
            ++broken;
            EXPECT_FALSE(whole) << known << "\n" << *other;
        } else if (*byPieces) {
            ++taken;
            ASSERT_TRUE(whole) << known << "\n" << *other;
            EXPECT_EQ(whole->shape, *shape) << known << "\n" << *other;
            EXPECT_TRUE(sameValues(whole->values, **byPieces)) << known << "\n" << *other;
        }
    }
    EXPECT_GT(taken, 5000);
    EXPECT_GT(broken, 100);
}

} // namespace
} // namespace kintar::companion::dialect
