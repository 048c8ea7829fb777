#include "platform/PosixFiles.h"

#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <system_error>

namespace kintar::platform {
namespace {

using ::testing::HasSubstr;
using testing::ScratchFolder;
using ::testing::UnorderedElementsAre;

/// A disk that takes only so many bytes a file: writing more fails as on a full one.
class SmallDisk {
public:
    explicit SmallDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small{bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int);
};

class PosixFilesTest : public ::testing::Test {
protected:
    ScratchFolder folder;
    PosixFiles files;
};

TEST_F(PosixFilesTest, ReadsAFileWithEveryByte) {
    const std::string content("a\r\n\0b", 5);
    folder.write("file", content);
    EXPECT_EQ(files.read(folder / "file", 5), content);
}

TEST_F(PosixFilesTest, ReadsNothingWhereThereIsNoFile) {
    folder.write("file", "");
    EXPECT_EQ(files.read(folder / "none", 10), std::nullopt);
    EXPECT_EQ(files.read(folder / "file/none", 10), std::nullopt);
    EXPECT_EQ(files.read(folder / "file", 10), "");
}

TEST_F(PosixFilesTest, RefusesToReadMoreThanItsLimit) {
    folder.write("file", std::string(20000, 'x'));
    EXPECT_THROW(files.read(folder / "file", 19999), std::system_error);
    EXPECT_EQ(files.read(folder / "file", 20000)->size(), 20000U);
}

TEST_F(PosixFilesTest, RefusesToReadAFolderOrAPipeWithoutWaiting) {
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_THROW(files.read(folder / "pipe", 10), std::system_error);
    EXPECT_THROW(files.read(folder.path(), 10), std::system_error);
    EXPECT_THROW(files.read("/dev/zero", 10), std::system_error);
}

TEST_F(PosixFilesTest, DeletesAFileAndIsContentWithoutOne) {
    folder.write("file", "x");
    files.deleteIfExists(folder / "file");
    files.deleteIfExists(folder / "file");
    EXPECT_FALSE(folder.has("file"));
}

TEST_F(PosixFilesTest, SaysWhichFileCannotBeDeleted) {
    folder.makeFolder("file");
    try {
        files.deleteIfExists(folder / "file");
        FAIL() << "a folder was deleted";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("cannot delete " + (folder / "file")));
    }
}

TEST_F(PosixFilesTest, AppendsToAFileOrMakesIt) {
    files.append(folder / "file", "one\r\n");
    files.append(folder / "file", "two\r\n");
    EXPECT_EQ(folder.read("file"), "one\r\ntwo\r\n");
}

TEST_F(PosixFilesTest, LeavesTheFileAsItWasWhereAppendingFails) {
    folder.write("file", "before");
    const SmallDisk disk(10);
    EXPECT_THROW(files.append(folder / "file", "much more than fits"), std::system_error);
    EXPECT_EQ(folder.read("file"), "before");
}

TEST_F(PosixFilesTest, DoesNotAppendThroughALink) {
    folder.write("target", "before");
    std::filesystem::create_symlink("target", folder / "link");
    EXPECT_THROW(files.append(folder / "link", "x"), std::system_error);
    EXPECT_EQ(folder.read("target"), "before");
}

TEST_F(PosixFilesTest, DoesNotMakeAMissingFolder) {
    EXPECT_THROW(files.append(folder / "Errors/file", "x"), std::system_error);
    EXPECT_FALSE(folder.has("Errors"));
}

TEST_F(PosixFilesTest, ListsTheNamesInAFolder) {
    folder.write("^IMP1.txt", "");
    folder.write(".hidden", "");
    folder.makeFolder("Images");
    EXPECT_THAT(files.names(folder.path()), UnorderedElementsAre("^IMP1.txt", ".hidden", "Images"));
    EXPECT_THROW(files.names(folder / "none"), std::system_error);
}

TEST_F(PosixFilesTest, CreatesAFileWholeAndLeavesNothingElse) {
    EXPECT_TRUE(files.createWhole(folder / "^IMP1.txt", "text\r\n"));
    EXPECT_EQ(folder.read("^IMP1.txt"), "text\r\n");
    EXPECT_EQ(folder.count(), 1);
}

TEST_F(PosixFilesTest, NeverReplacesAFileALinkOrAFolder) {
    folder.write("file", "before");
    folder.makeFolder("folder");
    std::filesystem::create_symlink("nowhere", folder / "link");
    for (const char* name : {"file", "folder", "link"}) {
        EXPECT_FALSE(files.createWhole(folder / name, "after")) << name;
    }
    EXPECT_EQ(folder.read("file"), "before");
    EXPECT_FALSE(folder.has("nowhere"));
    EXPECT_EQ(folder.count(), 3);
}

TEST_F(PosixFilesTest, LeavesNothingBehindOnAFullDisk) {
    const SmallDisk disk(10);
    EXPECT_THROW(files.createWhole(folder / "file", "much more than fits"), std::system_error);
    EXPECT_EQ(folder.count(), 0);
}

TEST_F(PosixFilesTest, SaysWhichFileCannotBeCreated) {
    try {
        files.createWhole(folder / "none/file", "x");
        FAIL() << "a file was made in a folder that does not exist";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_THAT(error.what(), HasSubstr(folder / "none/file"));
    }
}

} // namespace
} // namespace kintar::platform
