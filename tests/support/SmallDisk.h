// A folder on a disk that is soon full, for real.
#pragma once

#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

namespace kintar::testing {

/// Puts a file system in memory of `kilobytes` over a folder. Where this user may not do so, no
/// file of this process can become larger than that meanwhile; writes fail all the same.
class SmallDisk {
public:
    SmallDisk(std::string folder, int kilobytes) : folder_(std::move(folder)) {
        const std::string size = "size=" + std::to_string(kilobytes) + "k";
        mounted_ = ownMounts() && mount("none", folder_.c_str(), "tmpfs", 0, size.c_str()) == 0;
        if (!mounted_) {
            std::signal(SIGXFSZ, SIG_IGN);
            getrlimit(RLIMIT_FSIZE, &before_);
            rlimit limit = before_;
            limit.rlim_cur = static_cast<rlim_t>(kilobytes) * 1024;
            setrlimit(RLIMIT_FSIZE, &limit);
        }
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() {
        if (mounted_) {
            umount2(folder_.c_str(), MNT_DETACH);
        } else {
            setrlimit(RLIMIT_FSIZE, &before_);
        }
    }

private:
    /// Mounts of this process alone, from the first call on. To be asked for before any thread is
    /// started.
    static bool ownMounts() {
        static const bool own = [] {
            const uid_t user = geteuid();
            const bool alone = user == 0
                                   ? unshare(CLONE_NEWNS) == 0
                                   : unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && mapUser(user);
            return alone && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        }();
        return own;
    }
    static bool mapUser(uid_t user) {
        const std::string line = std::to_string(user) + " " + std::to_string(user) + " 1";
        const int map = open("/proc/self/uid_map", O_WRONLY | O_CLOEXEC);
        const bool written =
            map >= 0 && write(map, line.data(), line.size()) == static_cast<ssize_t>(line.size());
        close(map);
        return written;
    }

    std::string folder_;
    bool mounted_ = false;
    rlimit before_{};
};

} // namespace kintar::testing
