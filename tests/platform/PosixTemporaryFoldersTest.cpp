#include "platform/PosixTemporaryFolders.h"

#include "support/Environment.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace kintar::platform {
namespace {

using testing::Environment;
using ::testing::HasSubstr;
using testing::ScratchFolder;

TEST(PosixTemporaryFolders, TakesTmpdirThenTheRuntimeFolderThenTmp) {
    const PosixTemporaryFolders folders;
    const Environment runtime("XDG_RUNTIME_DIR", "/run/user/7");
    {
        const Environment tmpdir("TMPDIR", "/scratch");
        EXPECT_EQ(folders.systemFolder(), "/scratch/");
    }
    {
        const Environment tmpdir("TMPDIR", std::nullopt);
        EXPECT_EQ(folders.systemFolder(), "/run/user/7/");
        const Environment none("XDG_RUNTIME_DIR", std::nullopt);
        EXPECT_EQ(folders.systemFolder(), "/tmp/");
    }
}

TEST(PosixTemporaryFolders, PutsOneSeparatorAtTheEnd) {
    const Environment tmpdir("TMPDIR", "/scratch/");
    EXPECT_EQ(PosixTemporaryFolders().systemFolder(), "/scratch/");
}

TEST(PosixTemporaryFolders, DoesNotTakeARelativeOrEmptyPath) {
    const Environment runtime("XDG_RUNTIME_DIR", "");
    const Environment tmpdir("TMPDIR", "scratch");
    EXPECT_EQ(PosixTemporaryFolders().systemFolder(), "/tmp/");
}

class OwnFolderTest : public ::testing::Test {
protected:
    std::string errorOf(const std::string& folder) {
        try {
            folders.makeOwn(folder);
            return {};
        } catch (const std::system_error& error) {
            return error.what();
        }
    }

    ScratchFolder scratch;
    PosixTemporaryFolders folders;
};

TEST_F(OwnFolderTest, MakesTheFolderForTheUserAlone) {
    folders.makeOwn(scratch / "TarnTmp");
    struct stat status {};
    ASSERT_EQ(::stat((scratch / "TarnTmp").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700U);
}

TEST_F(OwnFolderTest, TakesTheSameFolderAgain) {
    folders.makeOwn(scratch / "TarnTmp");
    EXPECT_NO_THROW(folders.makeOwn(scratch / "TarnTmp"));
}

TEST_F(OwnFolderTest, IsNotSharedByTwoServers) {
    folders.makeOwn(scratch / "TarnTmp");
    PosixTemporaryFolders other;
    try {
        other.makeOwn(scratch / "TarnTmp");
        FAIL() << "two hold one folder";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("in use by another server"));
    }
}

TEST_F(OwnFolderTest, IsFreeAgainWhenItsServerHasGone) {
    {
        PosixTemporaryFolders gone;
        gone.makeOwn(scratch / "TarnTmp");
    }
    EXPECT_EQ(errorOf(scratch / "TarnTmp"), "");
}

TEST_F(OwnFolderTest, RefusesALink) {
    scratch.makeFolder("elsewhere");
    std::filesystem::create_directory_symlink("elsewhere", scratch / "TarnTmp");
    EXPECT_THAT(errorOf(scratch / "TarnTmp"), HasSubstr("not a plain folder"));
}

TEST_F(OwnFolderTest, RefusesAFileInItsPlace) {
    scratch.write("TarnTmp", "");
    EXPECT_THAT(errorOf(scratch / "TarnTmp"), HasSubstr("not a plain folder"));
}

TEST_F(OwnFolderTest, RefusesAFolderThatOthersMayEnter) {
    scratch.makeFolder("TarnTmp");
    ASSERT_EQ(::chmod((scratch / "TarnTmp").c_str(), 0755), 0);
    EXPECT_THAT(errorOf(scratch / "TarnTmp"), HasSubstr("open to other users"));
}

TEST_F(OwnFolderTest, RefusesAnotherUsersFolder) {
    std::string foreign = "/usr";
    if (::geteuid() == 0) {
        foreign = scratch / "TarnTmp";
        ASSERT_EQ(::mkdir(foreign.c_str(), 0700), 0);
        ASSERT_EQ(::chown(foreign.c_str(), 12345, 12345), 0);
    }
    EXPECT_THAT(errorOf(foreign), HasSubstr("belongs to another user"));
}

TEST_F(OwnFolderTest, SaysThatAFolderCannotBeMade) {
    EXPECT_THAT(errorOf(scratch / "none/TarnTmp"), HasSubstr("cannot make the folder"));
}

TEST_F(OwnFolderTest, DeletesFilesOnlyAndFollowsNoLink) {
    scratch.makeFolder("kept");
    scratch.write("kept/inside", "x");
    scratch.makeFolder("TarnTmp/folder");
    scratch.write("TarnTmp/folder/inside", "x");
    scratch.write("TarnTmp/file", "x");
    scratch.write("TarnTmp/.hidden", "x");
    std::filesystem::create_symlink("../kept/inside", scratch / "TarnTmp/link");
    std::filesystem::create_directory_symlink("../kept", scratch / "TarnTmp/folderlink");
    folders.deleteFiles(scratch / "TarnTmp");
    EXPECT_FALSE(scratch.has("TarnTmp/file"));
    EXPECT_FALSE(scratch.has("TarnTmp/.hidden"));
    EXPECT_FALSE(scratch.has("TarnTmp/link"));
    EXPECT_TRUE(scratch.has("TarnTmp/folder/inside"));
    EXPECT_TRUE(scratch.has("kept/inside"));
}

TEST_F(OwnFolderTest, DoesNotEmptyThroughALink) {
    scratch.makeFolder("kept");
    scratch.write("kept/inside", "x");
    std::filesystem::create_directory_symlink("kept", scratch / "TarnTmp");
    EXPECT_THROW(folders.deleteFiles(scratch / "TarnTmp"), std::system_error);
    EXPECT_TRUE(scratch.has("kept/inside"));
}

} // namespace
} // namespace kintar::platform
