#include "platform/qt/PhotoBox.h"

#include "support/EventLoop.h"

#include <gtest/gtest.h>

#include <vector>

namespace kintar::platform {
namespace {

class LateLoader final : public PhotoLoader {
public:
    std::uint32_t load(const PhotoRequest& request, Done done) override {
        requests.push_back(request);
        answers.push_back(std::move(done));
        return static_cast<std::uint32_t>(answers.size());
    }
    void cancel(std::uint32_t number) override {
        if (number != 0) {
            cancelled.push_back(number);
        }
    }
    void answer(std::uint32_t number, QSize size, const QColor& colour) {
        QImage photo(size, QImage::Format_ARGB32_Premultiplied);
        photo.fill(colour);
        answers.at(number - 1)(number, photo);
    }

    std::vector<PhotoRequest> requests;
    std::vector<Done> answers;
    std::vector<std::uint32_t> cancelled;
};

class PhotoBoxTest : public ::testing::Test {
protected:
    PhotoBoxTest() {
        box.resize(100, 80);
        box.show();
    }
    QColor at(int x, int y) { return box.grab().toImage().pixelColor(x, y); }

    LateLoader loader;
    PhotoBox box{loader, nullptr};
};

TEST_F(PhotoBoxTest, AsksForItsOwnSizeInDevicePixels) {
    box.load("/Images", "photo.jpg");
    ASSERT_EQ(loader.requests.size(), 1U);
    EXPECT_EQ(loader.requests[0].width, static_cast<int>(100 * box.devicePixelRatioF()));
    EXPECT_EQ(loader.requests[0].height, static_cast<int>(80 * box.devicePixelRatioF()));
}

TEST_F(PhotoBoxTest, PaintsThePhotoInTheMiddleWithItsProportions) {
    box.load("/Images", "photo.jpg");
    loader.answer(1, {40, 80}, Qt::red);
    EXPECT_EQ(at(50, 40), QColor(Qt::red));
    EXPECT_EQ(at(50, 1), QColor(Qt::red));
    EXPECT_NE(at(10, 40), QColor(Qt::red));
    EXPECT_NE(at(90, 40), QColor(Qt::red));
}

TEST_F(PhotoBoxTest, ScalesASmallPhotoUp) {
    box.load("/Images", "photo.jpg");
    loader.answer(1, {5, 4}, Qt::red);
    EXPECT_EQ(at(4, 4), QColor(Qt::red));
    EXPECT_EQ(at(95, 75), QColor(Qt::red));
}

TEST_F(PhotoBoxTest, IsBlankAtOnceWhenAnotherPhotoIsAskedFor) {
    box.load("/Images", "photo.jpg");
    loader.answer(1, {40, 80}, Qt::red);
    box.load("/Images", "other.jpg");
    EXPECT_EQ(box.state(), PhotoBox::State::Blank);
    EXPECT_NE(at(50, 40), QColor(Qt::red));
    EXPECT_EQ(box.accessibleName(), QString());
}

TEST_F(PhotoBoxTest, DropsAnAnswerToAnEarlierRequest) {
    box.load("/Images", "photo.jpg");
    box.load("/Images", "other.jpg");
    EXPECT_EQ(loader.cancelled, std::vector<std::uint32_t>{1});
    loader.answer(1, {40, 80}, Qt::red);
    EXPECT_EQ(box.state(), PhotoBox::State::Blank);
    box.showNoImage();
    loader.answer(2, {40, 80}, Qt::red);
    EXPECT_EQ(box.state(), PhotoBox::State::NoImage);
}

TEST_F(PhotoBoxTest, WritesNoImage) {
    const QImage blank = box.grab().toImage();
    box.showNoImage();
    EXPECT_EQ(box.accessibleName(), QStringLiteral("No Image"));
    EXPECT_NE(box.grab().toImage(), blank);
}

TEST_F(PhotoBoxTest, AsksAgainForALargerBoxAndKeepsThePhotoMeanwhile) {
    box.load("/Images", "photo.jpg");
    loader.answer(1, {40, 80}, Qt::red);
    box.resize(300, 300);
    ASSERT_TRUE(testing::runUntil([&] { return loader.requests.size() == 2; }));
    EXPECT_EQ(box.state(), PhotoBox::State::Photo);
    EXPECT_EQ(loader.requests[1].fileName, "photo.jpg");
    EXPECT_EQ(loader.requests[1].height, static_cast<int>(300 * box.devicePixelRatioF()));
    loader.answers.at(1)(2, {}); // the file has gone meanwhile
    EXPECT_EQ(box.state(), PhotoBox::State::Photo);
    EXPECT_EQ(at(150, 150), QColor(Qt::red));
}

TEST_F(PhotoBoxTest, CancelsItsRequestWhenItEnds) {
    {
        PhotoBox other(loader, nullptr);
        other.load("/Images", "photo.jpg");
    }
    EXPECT_EQ(loader.cancelled, std::vector<std::uint32_t>{1});
}

} // namespace
} // namespace kintar::platform
