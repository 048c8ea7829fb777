#include "tools/site/PhotoFolder.h"

#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

namespace kintar::site {
namespace {

namespace fs = std::filesystem;

class PhotoFolderTest : public ::testing::Test {
protected:
    PhotoFolderTest() {
        fs::create_directories(root / "Visitors");
        std::ofstream(root / "Anna.JPG") << "a";
        std::ofstream(root / "Visitors/v1.png") << "v";
        std::ofstream(root.parent_path() / "secret.jpg") << "s";
    }

    testing::ScratchFolder scratch;
    fs::path root = fs::path(scratch.path()) / "Images";
    PhotoFolder folder{root};
};

TEST_F(PhotoFolderTest, FindsAFileWithoutRegardToCase) {
    EXPECT_EQ(folder.find("anna.jpg"), PhotoPlace::Found);
    EXPECT_EQ(folder.find("ANNA.JPG"), PhotoPlace::Found);
}

TEST_F(PhotoFolderTest, FindsAFileWithEitherSeparator) {
    EXPECT_EQ(folder.find("Visitors\\V1.PNG"), PhotoPlace::Found);
    EXPECT_EQ(folder.find("visitors/v1.png"), PhotoPlace::Found);
}

TEST_F(PhotoFolderTest, MissesWhatIsNotThere) {
    EXPECT_EQ(folder.find("berta.jpg"), PhotoPlace::Missing);
    EXPECT_EQ(folder.find("nowhere\\v1.png"), PhotoPlace::Missing);
}

TEST_F(PhotoFolderTest, RefusesNamesThatLeadOutside) {
    for (const std::string_view name :
         {"../secret.jpg", "..\\secret.jpg", "Visitors/../../secret.jpg", "/etc/passwd",
          "\\\\server\\share\\x.jpg", "C:\\x.jpg", "", ".", "./anna.jpg"}) {
        EXPECT_EQ(folder.find(name), PhotoPlace::Outside) << name;
    }
    EXPECT_EQ(folder.find(std::string_view("anna.jpg\0x", 10)), PhotoPlace::Outside);
}

TEST_F(PhotoFolderTest, RefusesLinksFoldersAndPipes) {
    fs::create_symlink(root.parent_path() / "secret.jpg", root / "link.jpg");
    fs::create_directory_symlink(root.parent_path(), root / "up");
    ASSERT_EQ(::mkfifo((root / "pipe.jpg").c_str(), 0600), 0);
    EXPECT_EQ(folder.find("link.jpg"), PhotoPlace::NoPlainFile);
    EXPECT_EQ(folder.find("up/secret.jpg"), PhotoPlace::NoPlainFile);
    EXPECT_EQ(folder.find("pipe.jpg"), PhotoPlace::NoPlainFile);
    EXPECT_EQ(folder.find("Visitors"), PhotoPlace::NoPlainFile);
}

} // namespace
} // namespace kintar::site
