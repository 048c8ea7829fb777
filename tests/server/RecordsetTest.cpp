#include "server/Recordset.h"

#include "support/ErrorNumber.h"

#include <gtest/gtest.h>

#include <string>

namespace kintar {
namespace {

using testing::errorNumber;

/// Two people: number, name, visitor, last use.
Recordset people() {
    Recordset rows({{"ID", ColumnType::Integer},
                    {"Name", ColumnType::Text},
                    {"Visitor", ColumnType::YesNo},
                    {"LastDate", ColumnType::DateTime}});
    rows.addInteger(17);
    rows.addText("O'Brien, Zoë");
    rows.addInteger(-1);
    rows.addText("2012-03-14 17:05:00");
    rows.addInteger(18);
    rows.addNull();
    rows.addInteger(0);
    rows.addNull();
    return rows;
}

TEST(Recordset, KnowsItsCountAndStandsOnItsFirstRow) {
    Recordset rows = people();
    EXPECT_EQ(rows.RecordCount(), 2U);
    EXPECT_EQ(rows.field("ID").asLong(), 17);
}

TEST(Recordset, IsReadByNameWithoutRegardToCaseOrByPosition) {
    const Recordset rows = people();
    EXPECT_EQ(rows.field("NAME").view(), "O'Brien, Zoë");
    EXPECT_EQ(rows.field("lastdate").asDateTime().iso(), "2012-03-14T17:05:00");
    EXPECT_EQ(rows.field(std::size_t{0}).asLong(), 17);
    EXPECT_EQ(rows.at(1, 0).asLong(), 18);
}

TEST(Recordset, MovesBothWays) {
    Recordset rows = people();
    rows.MoveNext();
    EXPECT_EQ(rows.field("ID").asLong(), 18);
    rows.MoveNext();
    EXPECT_TRUE(rows.atEnd());
    rows.MoveNext();
    rows.MovePrevious();
    EXPECT_EQ(rows.field("ID").asLong(), 18);
    rows.MoveFirst();
    rows.MovePrevious();
    EXPECT_TRUE(rows.beforeStart());
    rows.MoveLast();
    EXPECT_EQ(rows.field("ID").asLong(), 18);
}

TEST(Recordset, WithoutRowsIsAtItsEnd) {
    const Recordset rows({{"ID", ColumnType::Integer}});
    EXPECT_TRUE(rows.atEnd());
    EXPECT_EQ(rows.RecordCount(), 0U);
    EXPECT_EQ(errorNumber([&] { static_cast<void>(rows.field("ID")); }), 3021);
    EXPECT_TRUE(Recordset().atEnd());
}

TEST(Recordset, RaisesAnErrorForAnUnknownColumn) {
    const Recordset rows = people();
    EXPECT_EQ(errorNumber([&] { static_cast<void>(rows.field("Nme")); }), 3265);
    EXPECT_EQ(errorNumber([&] { static_cast<void>(rows.field(std::size_t{4})); }), 3265);
    EXPECT_EQ(errorNumber([&] { static_cast<void>(rows.at(2, 0)); }), 3021);
}

TEST(FieldValue, YesNoShowsAsTrueAndFalse) {
    const Recordset rows = people();
    EXPECT_EQ(rows.at(0, 2).text(), "True");
    EXPECT_EQ(rows.at(1, 2).text(), "False");
    EXPECT_TRUE(rows.at(0, 2).asBoolean());
    EXPECT_FALSE(rows.at(1, 2).asBoolean());
}

TEST(FieldValue, NullIsEmptyTextAndNoNumber) {
    const Recordset rows = people();
    EXPECT_TRUE(rows.at(1, 1).isNull());
    EXPECT_EQ(rows.at(1, 1).text(), "");
    EXPECT_EQ(rows.at(1, 1).leadingLong(), 0);
    EXPECT_FALSE(rows.at(1, 1).asBoolean());
    EXPECT_EQ(errorNumber([&] { static_cast<void>(rows.at(1, 1).asLong()); }), 94);
    EXPECT_EQ(errorNumber([&] { static_cast<void>(rows.at(1, 3).asDateTime()); }), 94);
}

TEST(FieldValue, TextIsANumberOnlyAsAWhole) {
    const FieldValue number(ColumnType::Text, std::string_view(" 0012 "));
    EXPECT_EQ(number.asLong(), 12);
    const FieldValue words(ColumnType::Text, std::string_view("12 doors"));
    EXPECT_EQ(words.leadingLong(), 12);
    EXPECT_EQ(errorNumber([&] { static_cast<void>(words.asLong()); }), 13);
    EXPECT_EQ(errorNumber([&] { static_cast<void>(words.asDateTime()); }), 13);
}

TEST(FieldValue, RaisesOverflowOutsideTheTypeThatIsAskedFor) {
    const FieldValue large(ColumnType::Integer, std::int64_t{40000});
    EXPECT_EQ(large.asLong(), 40000);
    EXPECT_EQ(errorNumber([&] { static_cast<void>(large.asInteger()); }), 6);
    const FieldValue huge(ColumnType::Real, 1e300);
    EXPECT_EQ(errorNumber([&] { static_cast<void>(huge.asLong()); }), 6);
    EXPECT_EQ(FieldValue(ColumnType::Real, 2.5).asLong(), 2) << "half to even";
}

TEST(Recordset, KeepsManyRowsInOneBuffer) {
    Recordset rows({{"ID", ColumnType::Integer}, {"Name", ColumnType::Text}});
    constexpr int count = 10000;
    for (int i = 0; i < count; ++i) {
        rows.addInteger(i);
        rows.addText("name " + std::to_string(i));
    }
    ASSERT_EQ(rows.RecordCount(), static_cast<std::size_t>(count));
    EXPECT_EQ(rows.at(9999, 1).view(), "name 9999");
    const Recordset moved = std::move(rows);
    EXPECT_EQ(moved.at(1234, 1).view(), "name 1234");
}

} // namespace
} // namespace kintar
