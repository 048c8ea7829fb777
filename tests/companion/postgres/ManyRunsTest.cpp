#include "companion/postgres/ManyRuns.h"

#include <gtest/gtest.h>

namespace kintar::companion::postgres {
namespace {

TEST(ManyRuns, ATextOfOneRunBecomesThatOfMany) {
    EXPECT_EQ(
        textOfManyRuns("SELECT a, b FROM t WHERE k = $1 AND l = $2 ORDER BY a", {true, false}, 2),
        "SELECT v.run, r.* FROM unnest($1) WITH ORDINALITY AS v (p1, run) CROSS JOIN LATERAL "
        "(SELECT a, b FROM t WHERE k = v.p1 AND l = $2 ORDER BY a OFFSET 0) AS r (c1, c2)");
}

TEST(ManyRuns, SeveralParametersMayDiffer) {
    EXPECT_EQ(textOfManyRuns(
                  "SELECT $3 FROM t WHERE k = $1 OR k = $11 OR $2",
                  {true, false, true, false, false, false, false, false, false, false, true}, 1),
              "SELECT v.run, r.* FROM unnest($1, $3, $11) WITH ORDINALITY AS v (p1, p3, p11, run) "
              "CROSS JOIN LATERAL (SELECT v.p3 FROM t WHERE k = v.p1 OR k = v.p11 OR $2 OFFSET 0) "
              "AS r (c1)");
}

TEST(ManyRuns, WhatLooksLikeAParameterInsideQuotesIsNone) {
    EXPECT_EQ(textOfManyRuns(R"(SELECT "$1""$1", '$1''$1', $ FROM "t" WHERE k=$1)", {true}, 3),
              R"(SELECT v.run, r.* FROM unnest($1) WITH ORDINALITY AS v (p1, run) CROSS JOIN )"
              R"(LATERAL (SELECT "$1""$1", '$1''$1', $ FROM "t" WHERE k=v.p1 OFFSET 0) AS r )"
              R"((c1, c2, c3))");
}

TEST(ManyRuns, AnArrayHoldsAnyText) {
    EXPECT_EQ(arrayText({"1", "-2"}), R"({"1","-2"})");
    EXPECT_EQ(arrayText({"", std::nullopt, "NULL", R"(a"b\c,{d})"}),
              R"({"",NULL,"NULL","a\"b\\c,{d}"})");
}

TEST(ManyRuns, ValuesThatAreAllTheSameNeedNoArray) {
    EXPECT_TRUE(areEqual({"1", "1"}));
    EXPECT_TRUE(areEqual({std::nullopt, std::nullopt}));
    EXPECT_FALSE(areEqual({"", std::nullopt}));
    EXPECT_FALSE(areEqual({"1", "1", "2"}));
}

} // namespace
} // namespace kintar::companion::postgres
