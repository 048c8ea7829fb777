#include "tools/site/FacePainter.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kintar::site {
namespace {

/// In how many points of a coarse grid two pictures differ visibly.
int difference(const QImage& a, const QImage& b) {
    int count = 0;
    for (int y = 10; y < faceHeight; y += 20) {
        for (int x = 10; x < faceWidth; x += 20) {
            const QColor p = a.pixelColor(x, y);
            const QColor q = b.pixelColor(x, y);
            const int apart = std::abs(p.red() - q.red()) + std::abs(p.green() - q.green()) +
                              std::abs(p.blue() - q.blue());
            count += apart > 24 ? 1 : 0;
        }
    }
    return count;
}

TEST(FacePainter, DrawsTheSamePixelsForTheSameFace) {
    const Face face = faceOf(42, 1);
    EXPECT_EQ(paintFace(face, 42), paintFace(face, 42));
}

TEST(FacePainter, DrawsAPictureOfTheSizeItPromises) {
    EXPECT_EQ(paintFace(faceOf(1, 1), 1).size(), QSize(faceWidth, faceHeight));
}

TEST(FacePainter, DrawsNeighboursThatNobodyConfuses) {
    QImage previous = paintFace(faceOf(1, 1), 1);
    for (int id = 2; id <= 40; ++id) {
        const QImage image = paintFace(faceOf(id, 1), id);
        EXPECT_GT(difference(previous, image), 75) << id;
        previous = image;
    }
}

TEST(FacePainter, DrawsEveryKindOfEveryTrait) {
    const Face plain;
    const QImage base = paintFace(plain, 1);
    const auto differs = [&](int Face::*trait, int kinds) {
        for (int kind = 1; kind < kinds; ++kind) {
            Face face = plain;
            face.*trait = kind;
            EXPECT_NE(paintFace(face, 1), base) << kind;
        }
    };
    differs(&Face::skin, skinKinds);
    differs(&Face::hairStyle, hairStyleKinds);
    differs(&Face::shape, shapeKinds);
    differs(&Face::ground, groundKinds);
    differs(&Face::pattern, patternKinds);
    differs(&Face::clothes, clothesKinds);
    differs(&Face::clothesColour, clothesColourKinds);
    differs(&Face::glasses, glassesKinds);
    differs(&Face::beard, beardKinds);
    differs(&Face::eyes, eyesKinds);
    differs(&Face::eyeColour, eyeColourKinds);
    differs(&Face::brows, browsKinds);
    differs(&Face::nose, noseKinds);
    differs(&Face::mouth, mouthKinds);
    differs(&Face::marks, marksKinds);
}

TEST(FacePainter, WritesTheNumberOnTheBadge) {
    const Face face = faceOf(1, 1);
    EXPECT_NE(paintFace(face, 1), paintFace(face, 7));
    EXPECT_NE(paintFace(face, 123456), paintFace(face, 123457));
}

} // namespace
} // namespace kintar::site
