#include "tools/site/Face.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>

namespace kintar::site {
namespace {

auto looks(const Face& face) {
    return std::tuple(face.skin, face.hairStyle, face.hairColour, face.shape, face.ground,
                      face.pattern);
}

TEST(Face, IsTheSameForTheSamePersonAndSeed) {
    EXPECT_EQ(looks(faceOf(200, 1)), looks(faceOf(200, 1)));
    EXPECT_EQ(faceOf(200, 1).mouth, faceOf(200, 1).mouth);
}

TEST(Face, IsNobodyElsesAmongManyPersons) {
    std::set<decltype(looks(Face{}))> seen;
    for (int id = 1; id <= 5000; ++id) {
        EXPECT_TRUE(seen.insert(looks(faceOf(id, 1))).second) << id;
    }
}

TEST(Face, KeepsEveryTraitWithinItsKinds) {
    for (int id = 1; id <= 2000; ++id) {
        const Face face = faceOf(id, 3);
        EXPECT_LT(face.skin, skinKinds);
        EXPECT_LT(face.hairStyle, hairStyleKinds);
        EXPECT_LT(face.hairColour, hairColourKinds);
        EXPECT_LT(face.shape, shapeKinds);
        EXPECT_LT(face.ground, groundKinds);
        EXPECT_LT(face.pattern, patternKinds);
        EXPECT_LT(face.glasses, glassesKinds);
        EXPECT_LT(face.beard, beardKinds);
    }
}

TEST(Face, ShowsEveryKindOfHairAmongFiveHundred) {
    std::set<int> styles;
    for (int id = 1; id <= 500; ++id) {
        styles.insert(faceOf(id, 1).hairStyle);
    }
    EXPECT_EQ(styles.size(), static_cast<std::size_t>(hairStyleKinds));
}

} // namespace
} // namespace kintar::site
