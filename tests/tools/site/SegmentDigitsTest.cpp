#include "tools/site/SegmentDigits.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include <vector>

namespace kintar::site {
namespace {

QImage drawn(int number) {
    QImage image(200, 60, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    drawNumber(painter, QRectF(0, 5, 200, 50), number, Qt::black);
    return image;
}

bool isDark(const QImage& image, int x, int y) {
    return image.pixelColor(x, y).lightness() < 128;
}

TEST(SegmentDigits, DrawsEveryDigitDifferently) {
    std::vector<QImage> digits;
    for (int digit = 0; digit <= 9; ++digit) {
        digits.push_back(drawn(digit));
        for (int other = 0; other < digit; ++other) {
            EXPECT_NE(digits[static_cast<std::size_t>(other)], digits.back()) << digit;
        }
    }
}

TEST(SegmentDigits, LightsTheMiddleOfAnEightAndNotOfAZero) {
    EXPECT_TRUE(isDark(drawn(8), 100, 30));
    EXPECT_FALSE(isDark(drawn(0), 100, 30));
}

TEST(SegmentDigits, DrawsAOneOnTheRightOnly) {
    const QImage one = drawn(1);
    EXPECT_TRUE(isDark(one, 112, 20));
    EXPECT_FALSE(isDark(one, 88, 20));
}

TEST(SegmentDigits, StaysWithinItsHeight) {
    const QImage image = drawn(88);
    for (int x = 0; x < 200; ++x) {
        EXPECT_FALSE(isDark(image, x, 2));
        EXPECT_FALSE(isDark(image, x, 57));
    }
}

} // namespace
} // namespace kintar::site
