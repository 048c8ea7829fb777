#include "base/Number.h"

#include "support/ErrorNumber.h"

#include <gtest/gtest.h>

#include <limits>

namespace kintar {
namespace {

using testing::errorNumber;

struct LeadingCase {
    const char* text;
    double value;
};

TEST(LeadingNumber, ReadsWhatATextBeginsWith) {
    const LeadingCase cases[] = {
        {"", 0},          {"   ", 0},         {"text", 0},
        {"30 days", 30},  {" 12", 12},        {"12 ", 12},
        {"1 2", 12},      {"\t7\n8", 78},     {"-3", -3},
        {"+3", 3},        {"--3", 0},         {"- 3", -3},
        {"1e3", 1000},    {"1E-2", 0.01},     {"1d3", 1000},
        {"1e", 1},        {"&H10", 16},       {"&hff", 255},
        {"&HFFFF", -1},   {"&HFFFFFFFF", -1}, {"&O17", 15},
        {"&X1", 0},       {"&H", 0},          {"1,234", 1},
        {"0012", 12},     {"12.5kg", 12.5},   {".5", 0.5},
        {"5.", 5},        {".", 0},           {"1.2.3", 1.2},
        {"1234ID", 1234}, {"3L", 3},          {"99999999999", 99999999999.0},
        {"1e-999", 0},    {"-0", 0},
    };
    for (const LeadingCase& item : cases) {
        EXPECT_EQ(leadingNumber(item.text), item.value) << '"' << item.text << '"';
    }
}

TEST(LeadingNumber, RaisesOverflowBeyondItsType) {
    EXPECT_EQ(errorNumber([] { leadingNumber("1e999"); }), 6);
    EXPECT_EQ(errorNumber([] { leadingNumber("0.5e999"); }), 6);
    EXPECT_EQ(errorNumber([] { leadingNumber("1e99999999999999999999"); }), 6);
    EXPECT_EQ(errorNumber([] { leadingNumber(std::string(400, '9') + "e-1"); }), 6);
    EXPECT_EQ(leadingNumber("0e999"), 0);
    EXPECT_EQ(leadingNumber("0.5e-999"), 0);
    EXPECT_EQ(leadingNumber("1e-99999999999999999999"), 0);
    EXPECT_EQ(leadingNumber("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(leadingNumber("0." + std::string(400, '0') + "1e402"), 10);
    EXPECT_EQ(errorNumber([] { leadingNumber("&H1FFFFFFFF"); }), 6);
    EXPECT_EQ(errorNumber([] { leadingLong("2147483648"); }), 6);
    EXPECT_EQ(leadingLong("2147483647"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(leadingLong("-2147483648"), std::numeric_limits<std::int32_t>::min());
}

TEST(LeadingNumber, ALongIsRoundedHalfToEven) {
    EXPECT_EQ(leadingLong("2.5"), 2);
    EXPECT_EQ(leadingLong("3.5"), 4);
    EXPECT_EQ(leadingLong("2.51"), 3);
}

struct TextCase {
    const char* text;
    const char* value;
};

TEST(WholeNumber, IsTheWholeTextOrAnError) {
    const TextCase cases[] = {
        {"0", "0"},
        {"12", "12"},
        {" 12", "12"},
        {"12 ", "12"},
        {"\t12", "12"},
        {"+12", "12"},
        {"-12", "-12"},
        {"0012", "12"},
        {"-0", "0"},
        {"000", "0"},
        {"12345678901234567890", "12345678901234567890"},
    };
    for (const TextCase& item : cases) {
        EXPECT_EQ(wholeNumber(item.text), item.value) << '"' << item.text << '"';
    }
    for (const char* text : {"", " ", "abc", "12x", "1 2", "1e3", "&H10", "1,234", "12.5", "12.",
                             "--1", "+", "12\n", "12\r\nI L1", "\xD9\xA1", "inf"}) {
        EXPECT_EQ(errorNumber([&] { wholeNumber(text); }), 13) << '"' << text << '"';
    }
}

TEST(NumericText, IsBlanksASignDigitsAndOnePoint) {
    const TextCase cases[] = {
        {"123", "123"},
        {" 123 ", "123"},
        {"-3", "-3"},
        {"+3", "3"},
        {"0012", "12"},
        {"12.50", "12.5"},
        {".5", "0.5"},
        {"5.", "5"},
        {"-0.0", "0"},
        {"-0", "0"},
        {"12345678901234567890", "12345678901234567890"},
        {"0.10000000000000000001", "0.10000000000000000001"},
    };
    for (const TextCase& item : cases) {
        EXPECT_EQ(numericText(item.text), item.value) << '"' << item.text << '"';
    }
    for (const char* text : {"", " ", ".", "-", "abc", "3 days", "1e3", "&H1F", "12,5", "inf",
                             "nan", "1.2.3", "1 2", "- 3", "\xD9\xA1", "12\n"}) {
        EXPECT_FALSE(numericText(text)) << '"' << text << '"';
    }
}

TEST(NumericText, KnowsWhatIsGreaterThanZero) {
    EXPECT_TRUE(isPositive("1"));
    EXPECT_TRUE(isPositive("0.001"));
    EXPECT_TRUE(isPositive("99999999999999999999"));
    EXPECT_FALSE(isPositive("0"));
    EXPECT_FALSE(isPositive("-1"));
    EXPECT_FALSE(isPositive(""));
}

TEST(DecimalText, HasNoExponentAndNoSeparators) {
    EXPECT_EQ(decimalText(0), "0");
    EXPECT_EQ(decimalText(-0.0), "0");
    EXPECT_EQ(decimalText(1000000), "1000000");
    EXPECT_EQ(decimalText(-2.5), "-2.5");
    EXPECT_EQ(decimalText(1e21), "1000000000000000000000");
    EXPECT_EQ(decimalText(0.1), "0.1");
}

TEST(BooleanText, IsTrueOrFalse) {
    EXPECT_EQ(booleanText(true), "True");
    EXPECT_EQ(booleanText(false), "False");
}

TEST(Arithmetic, RaisesOverflowInsteadOfWrappingAround) {
    EXPECT_EQ(add16(32766, 1), 32767);
    EXPECT_EQ(errorNumber([] { add16(32767, 1); }), 6);
    EXPECT_EQ(errorNumber([] { add16(-32768, -1); }), 6);
    EXPECT_EQ(add32(-2147483647, -1), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(errorNumber([] { add32(2147483647, 1); }), 6);
    EXPECT_EQ(errorNumber([] { toInt16(40000); }), 6);
    EXPECT_EQ(errorNumber([] { toInt32(1LL << 40); }), 6);
}

TEST(RunTimeError, ReadsAsTheClientSeesIt) {
    EXPECT_EQ(RunTimeError::overflow().clientText(), "Run-time error '6': Overflow");
    EXPECT_EQ(RunTimeError::typeMismatch().clientText(), "Run-time error '13': Type mismatch");
    EXPECT_EQ(RunTimeError::invalidCall().clientText(),
              "Run-time error '5': Invalid procedure call or argument");
    EXPECT_EQ(RunTimeError::duplicateKey().clientText(),
              "Run-time error '457': This key is already associated with an element of this "
              "collection");
}

} // namespace
} // namespace kintar
