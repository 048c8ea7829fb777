#include "platform/photo/Confinement.h"

#include "support/ScratchFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <functional>
#include <thread>

namespace kintar::platform {
namespace {

/// Whether a step succeeds in a process that was confined.
bool worksConfined(const std::function<bool()>& step) {
    const pid_t parent = ::getpid();
    const pid_t child = ::fork();
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        confineProcess(parent, 0);
        std::_Exit(step() ? 1 : 2);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) != 0);
    return WEXITSTATUS(status) == 1;
}

TEST(Confinement, LeavesReadingAsItWas) {
    const testing::ScratchFolder folder;
    folder.write("photo.jpg", "photo");
    EXPECT_TRUE(worksConfined([&] {
        char text[8];
        const int file = ::open((folder / "photo.jpg").c_str(), O_RDONLY);
        return ::read(file, text, sizeof text) == 5;
    }));
}

TEST(Confinement, StartsNoOtherProgramAndNoOtherProcess) {
    EXPECT_FALSE(worksConfined([] { return ::fork() >= 0; }));
    EXPECT_FALSE(worksConfined([] {
        ::execl("/bin/true", "true", nullptr);
        return errno != EPERM;
    }));
}

TEST(Confinement, MayStillStartThreads) {
    EXPECT_TRUE(worksConfined([] {
        bool ran = false;
        std::thread([&] { ran = true; }).join();
        return ran;
    }));
}

TEST(Confinement, HasNoNetwork) {
    EXPECT_FALSE(worksConfined([] { return ::socket(AF_INET, SOCK_STREAM, 0) >= 0; }));
    EXPECT_FALSE(worksConfined([] { return ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }));
}

TEST(Confinement, ChangesNothingInTheFileSystem) {
    const testing::ScratchFolder folder;
    folder.write("photo.jpg", "photo");
    const std::string photo = folder / "photo.jpg";
    EXPECT_FALSE(worksConfined([&] { return ::unlink(photo.c_str()) == 0; }));
    EXPECT_FALSE(
        worksConfined([&] { return ::rename(photo.c_str(), (photo + "x").c_str()) == 0; }));
    EXPECT_FALSE(worksConfined([&] { return ::mkdir((photo + "d").c_str(), 0700) == 0; }));
    EXPECT_FALSE(worksConfined([&] { return ::chmod(photo.c_str(), 0777) == 0; }));
    EXPECT_FALSE(worksConfined([&] {
        const int file = ::open(photo.c_str(), O_WRONLY | O_APPEND);
        return ::write(file, "more", 4) > 0;
    }));
    EXPECT_EQ(folder.read("photo.jpg"), "photo");
}

TEST(Confinement, EndsWhereItsParentIsAnother) {
    const pid_t child = ::fork();
    if (child == 0) {
        confineProcess(1, 0);
        std::_Exit(7);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

} // namespace
} // namespace kintar::platform
