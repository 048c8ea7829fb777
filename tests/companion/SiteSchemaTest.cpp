#include "companion/SiteSchema.h"

#include "companion/Catalog.h"
#include "companion/SiteFolder.h"
#include "companion/sqlite/SchemaReader.h"
#include "companion/sqlite/SqliteHandle.h"

#include <gtest/gtest.h>
#include <set>

namespace kintar::companion {
namespace {

TEST(SiteSchema, ADatabaseMadeFromItReadsBackTheSame) {
    const SiteFolder site;
    const auto database = sqlite::openDatabase(site.database(), sqlite::Access::ReadOnly);
    const Catalog made(sqlite::readTables(database.get()));
    for (const TableDefinition& table : siteTables()) {
        const TableDefinition* found = made.find(table.name);
        ASSERT_NE(found, nullptr) << table.name;
        ASSERT_EQ(found->columns.size(), table.columns.size()) << table.name;
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            EXPECT_EQ(found->columns[column].name, table.columns[column].name);
            EXPECT_EQ(found->columns[column].type, table.columns[column].type);
        }
    }
}

TEST(SiteSchema, NamesEachTableAndColumnOnce) {
    std::set<std::string> tables;
    for (const TableDefinition& table : siteTables()) {
        EXPECT_TRUE(tables.insert(table.name).second) << table.name;
        std::set<std::string> columns;
        for (const ColumnDefinition& column : table.columns) {
            EXPECT_TRUE(columns.insert(column.name).second) << table.name << "." << column.name;
        }
    }
}

TEST(SiteSchema, TablesAndColumnsAreFoundWithoutRegardToCase) {
    const TableDefinition* names = Catalog::ofSite().find("nAMES");
    ASSERT_NE(names, nullptr);
    EXPECT_EQ(findColumn(*names, "LNAME"), 1U);
    EXPECT_EQ(findColumn(*names, "Nothing"), std::nullopt);
    EXPECT_EQ(Catalog::ofSite().find("Nothing"), nullptr);
}

TEST(SiteSchema, DeclarationsAreReadBackInAnyCase) {
    for (const ColumnType type : {ColumnType::Integer, ColumnType::Real, ColumnType::Text,
                                  ColumnType::YesNo, ColumnType::DateTime}) {
        EXPECT_EQ(columnTypeOf(declaredType(type)), type);
    }
    EXPECT_EQ(columnTypeOf("yesno"), ColumnType::YesNo);
    EXPECT_EQ(columnTypeOf("VARCHAR(20)"), ColumnType::Any);
}

TEST(SiteSchema, AnAssignedKeyIsNeverGivenTwice) {
    const SiteFolder site;
    site.foreign("INSERT INTO OvrSchedule (PointID) VALUES (1); DELETE FROM OvrSchedule;"
                 "INSERT INTO OvrSchedule (PointID) VALUES (2)");
    const auto database = sqlite::openDatabase(site.database(), sqlite::Access::ReadOnly);
    const auto query = sqlite::prepare(database.get(), "SELECT ID FROM OvrSchedule");
    ASSERT_EQ(sqlite3_step(query.get()), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(query.get(), 0), 11);
}

} // namespace
} // namespace kintar::companion
