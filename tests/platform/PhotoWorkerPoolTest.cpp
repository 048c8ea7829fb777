#include "platform/qt/PhotoWorkerPool.h"

#include "support/EventLoop.h"
#include "support/PhotoFiles.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>

namespace kintar::platform {
namespace {

using testing::pictureFile;
using testing::runUntil;
using testing::slowJpeg;
using testing::turnedJpeg;
using testing::viewOf;

const QColor orange(230, 120, 20);

bool isAbout(const QColor& one, const QColor& other) {
    return std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
               std::abs(one.blue() - other.blue()) <
           24;
}

class PhotoWorkerPoolTest : public ::testing::Test {
protected:
    /// The photo of a file, once it is there; a null image: there is none.
    QImage load(const std::string& name, QSize box = {200, 180}) {
        std::optional<QImage> result;
        pool.load({folder.path(), name, box.width(), box.height()},
                  [&](std::uint32_t, const QImage& photo) { result = photo; });
        EXPECT_TRUE(runUntil([&] { return result.has_value(); })) << name;
        return result.value_or(QImage());
    }
    void writePhoto(const char* name, const QByteArray& bytes) {
        folder.write(name, viewOf(bytes));
    }
    bool haveAllGone(const std::vector<pid_t>& processes) {
        const std::vector<pid_t> now = pool.processes();
        return std::none_of(processes.begin(), processes.end(), [&](pid_t process) {
            return std::find(now.begin(), now.end(), process) != now.end();
        });
    }
    void expectStillWorks() {
        writePhoto("good.png", pictureFile({40, 30}, orange, "png"));
        EXPECT_EQ(load("good.png").size(), QSize(40, 30));
    }

    testing::ScratchFolder folder;
    PhotoWorkerPool pool{KINTAR3_PHOTO};
};

TEST_F(PhotoWorkerPoolTest, ShowsJpegPngBmpAndTiffFiles) {
    for (const char* format : {"jpeg", "png", "bmp", "tiff"}) {
        writePhoto("photo", pictureFile({40, 30}, orange, format));
        const QImage photo = load("photo");
        ASSERT_EQ(photo.size(), QSize(40, 30)) << format;
        EXPECT_TRUE(isAbout(photo.pixelColor(20, 15), orange)) << format;
    }
}

TEST_F(PhotoWorkerPoolTest, ScalesALargePhotoIntoItsBox) {
    for (const char* format : {"jpeg", "png", "tiff"}) {
        writePhoto("photo", pictureFile({1200, 1600}, orange, format));
        EXPECT_EQ(load("photo", {200, 180}).size(), QSize(135, 180)) << format;
    }
}

TEST_F(PhotoWorkerPoolTest, TurnsAPhotoUpright) {
    writePhoto("turned.jpg", turnedJpeg({1600, 800}, orange, 6));
    EXPECT_EQ(load("turned.jpg", {200, 200}).size(), QSize(100, 200));
    writePhoto("upright.jpg", turnedJpeg({1600, 800}, orange, 1));
    EXPECT_EQ(load("upright.jpg", {200, 200}).size(), QSize(200, 100));
}

TEST_F(PhotoWorkerPoolTest, HasNoPhotoForAMissingEmptyOrBrokenFile) {
    writePhoto("empty.jpg", {});
    writePhoto("text.jpg", "This is no photo.");
    writePhoto("script.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>");
    for (const char* name : {"missing.jpg", "empty.jpg", "text.jpg", "script.svg", ""}) {
        EXPECT_TRUE(load(name).isNull()) << name;
    }
    expectStillWorks();
}

TEST_F(PhotoWorkerPoolTest, AnswersForATruncatedPhoto) {
    const QByteArray whole = pictureFile({400, 300}, orange, "png");
    writePhoto("truncated.png", whole.left(whole.size() / 2));
    load("truncated.png");
    expectStillWorks();
}

TEST_F(PhotoWorkerPoolTest, HasNoPhotoForAFolderAPipeOrADevice) {
    folder.makeFolder("folder.jpg");
    ASSERT_EQ(::mkfifo((folder / "pipe.jpg").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", folder / "zero.jpg");
    for (const char* name : {"folder.jpg", "pipe.jpg", "zero.jpg"}) {
        EXPECT_TRUE(load(name).isNull()) << name;
    }
    expectStillWorks();
}

TEST_F(PhotoWorkerPoolTest, SurvivesFilesThatAskForMuchMemory) {
    for (const auto& file : std::filesystem::directory_iterator(KINTAR_HOSTILE_PHOTOS)) {
        std::filesystem::copy_file(file, folder / file.path().filename().string());
        EXPECT_TRUE(load(file.path().filename().string()).isNull()) << file;
    }
    expectStillWorks();
}

TEST_F(PhotoWorkerPoolTest, GivesUpAPhotoThatTakesTooLong) {
    writePhoto("slow.jpg", slowJpeg());
    ASSERT_TRUE(runUntil([&] { return pool.isWarm(); }));
    const std::vector<pid_t> before = pool.processes();
    EXPECT_TRUE(load("slow.jpg").isNull());
    EXPECT_NE(pool.processes(), before) << "its worker goes on";
    expectStillWorks();
}

TEST_F(PhotoWorkerPoolTest, StartsOthersForWorkersThatDie) {
    ASSERT_TRUE(runUntil([&] { return pool.isWarm(); }));
    const std::vector<pid_t> first = pool.processes();
    ASSERT_EQ(first.size(), 2U);
    for (const pid_t process : first) {
        ::kill(process, SIGKILL);
    }
    EXPECT_TRUE(runUntil([&] { return pool.isWarm() && pool.processes() != first; }));
    expectStillWorks();
}

TEST_F(PhotoWorkerPoolTest, HasNoPhotoWhereItsWorkerDies) {
    writePhoto("slow.jpg", slowJpeg());
    ASSERT_TRUE(runUntil([&] { return pool.isWarm(); }));
    std::optional<QImage> result;
    pool.load({folder.path(), "slow.jpg", 100, 100},
              [&](std::uint32_t, const QImage& photo) { result = photo; });
    for (int round = 0; round < 3 && !result.has_value(); ++round) {
        const std::vector<pid_t> before = pool.processes();
        for (const pid_t process : before) {
            ::kill(process, SIGSEGV);
        }
        ASSERT_TRUE(runUntil([&] { return haveAllGone(before); }));
    }
    EXPECT_TRUE(runUntil([&] { return result.has_value(); }));
    EXPECT_TRUE(result->isNull());
    expectStillWorks();
}

TEST_F(PhotoWorkerPoolTest, TriesAPhotoAgainWhereItsWorkerDies) {
    writePhoto("good.png", pictureFile({40, 30}, orange, "png"));
    ASSERT_TRUE(runUntil([&] { return pool.isWarm(); }));
    for (const pid_t process : pool.processes()) {
        ::kill(process, SIGKILL);
    }
    EXPECT_EQ(load("good.png").size(), QSize(40, 30));
}

TEST_F(PhotoWorkerPoolTest, HasNoPhotoForANameLongerThanAnyPath) {
    EXPECT_TRUE(load(std::string(100000, 'x')).isNull());
    expectStillWorks();
}

TEST_F(PhotoWorkerPoolTest, NeverAnswersWhatWasCancelled) {
    writePhoto("good.png", pictureFile({40, 30}, orange, "png"));
    bool answered = false;
    const PhotoRequest request{folder.path(), "good.png", 100, 100};
    pool.cancel(pool.load(request, [&](std::uint32_t, const QImage&) { answered = true; }));
    expectStillWorks();
    EXPECT_FALSE(answered);
}

TEST_F(PhotoWorkerPoolTest, IsNotHeldUpByManyPhotosThatNobodyWantsAnyMore) {
    writePhoto("slow.jpg", slowJpeg());
    for (int i = 0; i < 20; ++i) {
        pool.cancel(
            pool.load({folder.path(), "slow.jpg", 100, 100}, [](std::uint32_t, const QImage&) {}));
    }
    expectStillWorks();
}

TEST_F(PhotoWorkerPoolTest, AnswersEveryRequestWithItsOwnNumberAndPhoto) {
    constexpr int count = 40;
    int answers = 0;
    int right = 0;
    for (int i = 1; i <= count; ++i) {
        const std::string name = "photo" + std::to_string(i);
        writePhoto(name.c_str(), pictureFile({i, 10}, orange, "png"));
    }
    for (int i = 1; i <= count; ++i) {
        const auto number = std::make_shared<std::uint32_t>();
        *number = pool.load({folder.path(), "photo" + std::to_string(i), 100, 100},
                            [&, i, number](std::uint32_t told, const QImage& photo) {
                                ++answers;
                                right += told == *number && photo.width() == i ? 1 : 0;
                            });
    }
    EXPECT_TRUE(runUntil([&] { return answers == count; }));
    EXPECT_EQ(right, count);
}

TEST_F(PhotoWorkerPoolTest, MayBeAskedAgainFromWithinAnAnswer) {
    writePhoto("good.png", pictureFile({40, 30}, orange, "png"));
    const PhotoRequest request{folder.path(), "good.png", 100, 100};
    bool second = false;
    pool.load(request, [&](std::uint32_t, const QImage&) {
        pool.load(request, [&](std::uint32_t, const QImage& photo) { second = !photo.isNull(); });
    });
    EXPECT_TRUE(runUntil([&] { return second; }));
}

TEST_F(PhotoWorkerPoolTest, KeepsAWorkerWithin256Megabytes) {
    const auto peakKilobytes = [](pid_t process) {
        std::ifstream status("/proc/" + std::to_string(process) + "/status");
        std::string word;
        long peak = 0;
        while (status >> word) {
            if (word == "VmHWM:") {
                status >> peak;
            }
        }
        return peak;
    };
    for (const auto& file : std::filesystem::directory_iterator(KINTAR_HOSTILE_PHOTOS)) {
        std::filesystem::copy_file(file, folder / file.path().filename().string());
        load(file.path().filename().string());
    }
    writePhoto("large.bmp", pictureFile({5000, 5000}, orange, "bmp"));
    load("large.bmp");
    for (const pid_t process : pool.processes()) {
        EXPECT_LT(peakKilobytes(process), 256 * 1024);
    }
}

TEST(PhotoWorkerPool, SaysNoImageWhereTheWorkerProgramIsMissing) {
    PhotoWorkerPool pool("/nowhere/kintar3-photo");
    std::optional<QImage> result;
    pool.load({"/", "photo.jpg", 10, 10},
              [&](std::uint32_t, const QImage& photo) { result = photo; });
    EXPECT_TRUE(runUntil([&] { return result.has_value(); }));
    EXPECT_TRUE(result->isNull());
}

TEST(PhotoWorkerPool, SaysNoImageWhereTheWorkerIsAnotherProgram) {
    PhotoWorkerPool pool("/bin/echo");
    std::optional<QImage> result;
    pool.load({"/", "photo.jpg", 10, 10},
              [&](std::uint32_t, const QImage& photo) { result = photo; });
    EXPECT_TRUE(runUntil([&] { return result.has_value(); }));
    EXPECT_TRUE(result->isNull());
}

} // namespace
} // namespace kintar::platform
