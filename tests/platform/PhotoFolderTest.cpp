#include "platform/photo/PhotoFolder.h"

#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utime.h>

#include <filesystem>

namespace kintar::platform {
namespace {

using ::testing::ElementsAre;
using testing::ScratchFolder;

TEST(PhotoName, TakesBothKindsOfSeparator) {
    EXPECT_THAT(*photoNameParts(R"(a\b/c.jpg)"), ElementsAre("a", "b", "c.jpg"));
    EXPECT_THAT(*photoNameParts(R"(a\\.\c.jpg)"), ElementsAre("a", "c.jpg"));
}

TEST(PhotoName, RefusesWhatLeadsElsewhere) {
    for (const std::string& name :
         {std::string(), std::string("/etc/passwd"), std::string(R"(\\server\share\x.jpg)"),
          std::string(R"(C:\x.jpg)"), std::string("c:x.jpg"), std::string("../x.jpg"),
          std::string(R"(a\..\..\x.jpg)"), std::string("a/.."), std::string("."),
          std::string("a\0b.jpg", 7), std::string(2000, 'x')}) {
        EXPECT_EQ(photoNameParts(name), std::nullopt) << name;
    }
}

TEST(PhotoName, RefusesTooManyFolders) {
    std::string name;
    for (int depth = 0; depth < 100; ++depth) {
        name += "a/";
    }
    EXPECT_EQ(photoNameParts(name + "x.jpg"), std::nullopt);
}

TEST(PhotoName, TakesDotsWithinANameAsTheyAre) {
    EXPECT_THAT(*photoNameParts("..x/a..b.jpg"), ElementsAre("..x", "a..b.jpg"));
}

class PhotoFolderTest : public ::testing::Test {
protected:
    PhotoFolderTest() {
        scratch.makeFolder("Images/sub");
        scratch.write("Images/photo.jpg", "photo");
        scratch.write("Images/sub/Deep.JPG", "deep");
        scratch.write("outside.jpg", "outside");
    }

    /// The content of what is opened; "none" where nothing is.
    std::string open(std::string_view name) {
        const Descriptor file = photos.open(images, name);
        if (!file) {
            return "none";
        }
        char text[64];
        const ssize_t length = ::read(file.get(), text, sizeof text);
        return {text, static_cast<std::size_t>(length)};
    }

    ScratchFolder scratch;
    std::string images = scratch / "Images";
    PhotoFolder photos;
};

TEST_F(PhotoFolderTest, OpensAFileByItsName) {
    EXPECT_EQ(open("photo.jpg"), "photo");
    EXPECT_EQ(open(R"(sub\Deep.JPG)"), "deep");
    EXPECT_EQ(open("sub/Deep.JPG"), "deep");
}

TEST_F(PhotoFolderTest, IgnoresTheCaseOfLetters) {
    scratch.write("Images/\xC3\x84"
                  "rger.jpg",
                  "umlaut");
    EXPECT_EQ(open("PHOTO.JPG"), "photo");
    EXPECT_EQ(open(R"(SUB\deep.jpg)"), "deep");
    EXPECT_EQ(open("\xC3\xA4RGER.jpg"), "umlaut");
}

TEST_F(PhotoFolderTest, PrefersTheExactName) {
    scratch.write("Images/PHOTO.jpg", "upper");
    EXPECT_EQ(open("photo.jpg"), "photo");
    EXPECT_EQ(open("PHOTO.jpg"), "upper");
    EXPECT_EQ(open("Photo.jpg"), "upper"); // the first in the order of its bytes
}

TEST_F(PhotoFolderTest, NoticesNewFiles) {
    EXPECT_EQ(open("NEW.jpg"), "none");
    scratch.write("Images/new.jpg", "new");
    EXPECT_EQ(open("NEW.jpg"), "new");
}

TEST_F(PhotoFolderTest, NoticesNewFilesInAFolderThatWasListedWhenItHadSettled) {
    const utimbuf longAgo{1000000000, 1000000000};
    ASSERT_EQ(::utime(images.c_str(), &longAgo), 0);
    EXPECT_EQ(open("NEW.jpg"), "none");
    scratch.write("Images/new.jpg", "new");
    EXPECT_EQ(open("NEW.jpg"), "new");
    std::filesystem::remove(images + "/new.jpg");
    EXPECT_EQ(open("NEW.jpg"), "none");
}

TEST_F(PhotoFolderTest, FollowsALinkThatStaysInside) {
    std::filesystem::create_symlink("sub/Deep.JPG", images + "/link.jpg");
    EXPECT_EQ(open("link.jpg"), "deep");
}

TEST_F(PhotoFolderTest, DoesNotFollowALinkThatLeadsOut) {
    std::filesystem::create_symlink("../outside.jpg", images + "/relative.jpg");
    std::filesystem::create_symlink(scratch / "outside.jpg", images + "/absolute.jpg");
    std::filesystem::create_directory_symlink("..", images + "/up");
    for (const char* name : {"relative.jpg", "absolute.jpg", "up/outside.jpg", "UP/outside.jpg"}) {
        EXPECT_EQ(open(name), "none") << name;
    }
}

TEST_F(PhotoFolderTest, OpensPlainFilesOnly) {
    ASSERT_EQ(::mkfifo((images + "/pipe.jpg").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/null", images + "/null.jpg");
    for (const char* name : {"sub", "pipe.jpg", "null.jpg", "PIPE.jpg"}) {
        EXPECT_EQ(open(name), "none") << name;
    }
}

TEST_F(PhotoFolderTest, HasNothingWhereItsFolderIsMissing) {
    images = scratch / "none";
    EXPECT_EQ(open("photo.jpg"), "none");
}

} // namespace
} // namespace kintar::platform
