#include "search/ListColumns.h"

#include "search/TableTwin.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using testing::null;
using testing::Row;
using testing::TwinDatabase;

const std::string columnStatement =
    "SELECT * FROM FormData WHERE FORM = 'ListNAMESEARCH' ORDER BY INDEX";

TEST(ListColumns, AreTheSitesInTheirOrder) {
    TwinDatabase twin;
    twin.record.answer(
        columnStatement, {"FORM", "INDEX", "Caption", "Width"},
        {Row{"ListNAMESEARCH", 1, "Name", 2400}, Row{"ListNAMESEARCH", 2, "Visitor", 900}});
    const auto columns = readListColumns(twin.database);
    ASSERT_EQ(columns.size(), 2U);
    EXPECT_EQ(columns[0].caption, "Name");
    EXPECT_EQ(columns[0].width, 2400);
    EXPECT_EQ(columns[1].caption, "Visitor");
    EXPECT_EQ(columns[1].width, 900);
    EXPECT_EQ(twin.record.takeStatements(), std::vector<std::string>{columnStatement});
}

TEST(ListColumns, AMissingCaptionIsEmptyAndAWidthIsNeverNegative) {
    TwinDatabase twin;
    twin.record.answer(columnStatement, {"Caption", "Width"}, {Row{null, null}, Row{"x", -5}});
    const auto columns = readListColumns(twin.database);
    ASSERT_EQ(columns.size(), 2U);
    EXPECT_EQ(columns[0].caption, "");
    EXPECT_EQ(columns[0].width, 0);
    EXPECT_EQ(columns[1].width, 0);
}

TEST(ListColumns, OfUserDefinedFieldsAreTwoOfFixedWidth) {
    const auto columns = udfColumns("Feld", "");
    ASSERT_EQ(columns.size(), 2U);
    EXPECT_EQ(columns[0].caption, "Feld");
    EXPECT_EQ(columns[0].width, 2000);
    EXPECT_EQ(columns[1].caption, "Value");
    EXPECT_EQ(columns[1].width, 4000);
}

} // namespace
} // namespace kintar::search
