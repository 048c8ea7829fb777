#include "tools/sql/RowsOutput.h"

#include <gtest/gtest.h>
#include <sstream>

namespace kintar::tools {
namespace {

Recordset people() {
    Recordset rows(std::vector<Column>{{"ID", ColumnType::Integer},
                                       {"Name", ColumnType::Text},
                                       {"Visitor", ColumnType::YesNo},
                                       {"Share", ColumnType::Real}});
    rows.addInteger(7);
    rows.addText("Zoë \"Z\", O'Brien");
    rows.addInteger(-1);
    rows.addReal(1.5);
    rows.addInteger(12345);
    rows.addText("a\x1b[31m\r\nb");
    rows.addInteger(0);
    rows.addNull();
    return rows;
}

std::string written(void (*write)(const Recordset&, std::ostream&), const Recordset& rows) {
    std::ostringstream out;
    write(rows, out);
    return out.str();
}

TEST(AlignedRows, StandUnderTheirNamesAndAreCounted) {
    EXPECT_EQ(written(writeAligned, people()), "   ID  Name              Visitor  Share\n"
                                               "-----  ----------------  -------  -----\n"
                                               "    7  Zoë \"Z\", O'Brien  True       1.5\n"
                                               "12345  a [31m b          False         \n"
                                               "(2 rows)\n");
}

TEST(AlignedRows, OfNothingAreCountedToo) {
    const Recordset none(std::vector<Column>{{"ID", ColumnType::Integer}});
    EXPECT_EQ(written(writeAligned, none), "ID\n--\n(0 rows)\n");
}

TEST(CsvRows, AreQuotedWhereTheyNeedIt) {
    EXPECT_EQ(written(writeCsv, people()), "ID,Name,Visitor,Share\r\n"
                                           "7,\"Zoë \"\"Z\"\", O'Brien\",True,1.5\r\n"
                                           "12345,\"a\x1b[31m\r\nb\",False,\r\n");
}

TEST(JsonRows, KeepTheirTypes) {
    EXPECT_EQ(written(writeJson, people()),
              "[\n"
              "{\"ID\":7,\"Name\":\"Zoë \\\"Z\\\", O'Brien\",\"Visitor\":true,\"Share\":1.5},\n"
              "{\"ID\":12345,\"Name\":\"a\\u001b[31m\\r\\nb\",\"Visitor\":false,\"Share\":null}\n"
              "]\n");
}

} // namespace
} // namespace kintar::tools
