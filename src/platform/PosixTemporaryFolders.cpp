#include "platform/PosixTemporaryFolders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <system_error>

namespace kintar::platform {

namespace {

[[noreturn]] void fail(int error, const std::string& what) {
    throw std::system_error(error, std::generic_category(), what);
}

Descriptor openFolder(const std::string& folder) {
    Descriptor opened(
        ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
    if (!opened) {
        const bool notPlain = errno == ELOOP || errno == ENOTDIR;
        fail(errno, notPlain ? folder + " is not a plain folder" : "cannot open " + folder);
    }
    return opened;
}

struct stat statusOf(const Descriptor& opened, const std::string& folder) {
    struct stat status {};
    if (::fstat(opened.get(), &status) != 0) {
        fail(errno, "cannot look at " + folder);
    }
    return status;
}

void deleteEntry(int folder, const char* name) {
    struct stat status {};
    if (::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && !S_ISDIR(status.st_mode)) {
        // A link is removed itself; what it leads to stays.
        ::unlinkat(folder, name, 0);
    }
}

} // namespace

std::string PosixTemporaryFolders::systemFolder() const {
    std::string folder = "/tmp";
    for (const char* variable : {"TMPDIR", "XDG_RUNTIME_DIR"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && value[0] == '/') {
            folder = value;
            break;
        }
    }
    return folder.back() == '/' ? folder : folder + '/';
}

bool PosixTemporaryFolders::holds(dev_t device, ino_t node) const {
    return std::any_of(held_.begin(), held_.end(), [&](const Held& held) {
        return held.device == device && held.node == node;
    });
}

void PosixTemporaryFolders::makeOwn(const std::string& folder) {
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
        fail(errno, "cannot make the folder " + folder);
    }
    Descriptor opened = openFolder(folder);
    const struct stat status = statusOf(opened, folder);
    if (status.st_uid != ::geteuid()) {
        fail(EPERM, folder + " belongs to another user");
    }
    if ((status.st_mode & 0777) != 0700) {
        fail(EPERM, folder + " is open to other users (its mode must be 0700)");
    }
    if (holds(status.st_dev, status.st_ino)) {
        return;
    }
    if (::flock(opened.get(), LOCK_EX | LOCK_NB) != 0) {
        fail(errno, errno == EWOULDBLOCK ? folder + " is in use by another server"
                                         : "cannot lock " + folder);
    }
    held_.push_back({status.st_dev, status.st_ino, std::move(opened)});
}

void PosixTemporaryFolders::deleteFiles(const std::string& folder) {
    Descriptor opened = openFolder(folder);
    const int raw = opened.get();
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(::fdopendir(raw), ::closedir);
    if (!listing) {
        fail(errno, "cannot list " + folder);
    }
    [[maybe_unused]] const int ownedByListing = opened.release();
    while (const dirent* entry = ::readdir(listing.get())) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
            deleteEntry(raw, entry->d_name);
        }
    }
}

} // namespace kintar::platform
