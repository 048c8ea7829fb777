#include "platform/PosixFiles.h"

#include "platform/Descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

namespace kintar::platform {

namespace {

[[noreturn]] void fail(int error, const std::string& what, const std::string& path) {
    throw std::system_error(error, std::generic_category(), what + " " + path);
}

Descriptor openPlain(const std::string& path, int flags, const std::string& what,
                     mode_t mode = 0666) {
    // O_NONBLOCK: opening a pipe that nobody writes to must not wait.
    Descriptor file(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode));
    if (!file) {
        return file;
    }
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) {
        fail(errno, what, path);
    }
    if (!S_ISREG(status.st_mode)) {
        fail(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, what + " (not a plain file)", path);
    }
    return file;
}

/// 0, or the error that stopped the writing.
int writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return written < 0 ? errno : EIO;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return 0;
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// A file under a hidden name of its own, deleted at the end unless it was given its real name.
class HiddenFile {
public:
    explicit HiddenFile(const std::string& target) {
        std::random_device random;
        for (int attempt = 0; attempt < 16 && !file_; ++attempt) {
            char name[64];
            std::snprintf(name, sizeof name, "/.kintar-%08x%08x.part", random(), random());
            path_ = folderOf(target) + name;
            file_ = Descriptor(
                ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666));
            if (!file_ && errno != EEXIST) {
                break;
            }
        }
        if (!file_) {
            fail(errno, "cannot make a file for", target);
        }
    }
    HiddenFile(const HiddenFile&) = delete;
    HiddenFile& operator=(const HiddenFile&) = delete;
    ~HiddenFile() {
        if (!path_.empty()) {
            ::unlink(path_.c_str());
        }
    }

    [[nodiscard]] int descriptor() const { return file_.get(); }

    /// False where the name is taken.
    bool becomes(const std::string& target) {
        if (::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
            path_.clear();
            return true;
        }
        // A network file system may know only the older way to the same end.
        if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP) {
            if (::link(path_.c_str(), target.c_str()) == 0) {
                return true;
            }
        }
        if (errno == EEXIST) {
            return false;
        }
        fail(errno, "cannot give its name to", target);
    }

private:
    std::string path_;
    Descriptor file_;
};

} // namespace

std::optional<std::string> PosixFiles::read(const std::string& path, std::size_t limit) {
    const Descriptor file = openPlain(path, O_RDONLY, "cannot read");
    if (!file) {
        if (errno == ENOENT || errno == ENOTDIR) {
            return std::nullopt;
        }
        fail(errno, "cannot read", path);
    }
    std::string content;
    char block[8192];
    for (;;) {
        const ssize_t length = ::read(file.get(), block, sizeof block);
        if (length < 0 && errno == EINTR) {
            continue;
        }
        if (length < 0) {
            fail(errno, "cannot read", path);
        }
        if (length == 0) {
            return content;
        }
        content.append(block, static_cast<std::size_t>(length));
        if (content.size() > limit) {
            fail(EFBIG, "cannot read", path);
        }
    }
}

void PosixFiles::deleteIfExists(const std::string& path) {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) {
        fail(errno, "cannot delete", path);
    }
}

void PosixFiles::append(const std::string& path, std::string_view text) {
    const Descriptor file =
        openPlain(path, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW, "cannot write");
    if (!file) {
        fail(errno, "cannot write", path);
    }
    struct stat before {};
    if (::fstat(file.get(), &before) != 0) {
        fail(errno, "cannot write", path);
    }
    if (const int error = writeAll(file.get(), text)) {
        // What was written of it goes again; where even that fails, the first error is the one
        // told.
        [[maybe_unused]] const int cut = ::ftruncate(file.get(), before.st_size);
        fail(error, "cannot write", path);
    }
}

std::vector<std::string> PosixFiles::names(const std::string& folder) {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        found.push_back(entry.path().filename().string());
    }
    return found;
}

bool PosixFiles::createWhole(const std::string& path, std::string_view content) {
    HiddenFile file(path);
    int error = writeAll(file.descriptor(), content);
    if (error == 0 && ::fsync(file.descriptor()) != 0) {
        error = errno;
    }
    if (error != 0) {
        fail(error, "cannot write", path);
    }
    if (!file.becomes(path)) {
        return false;
    }
    // The name is there for everybody now; that it survives a power cut is the folder's matter, and
    // some network file systems cannot do it: no reason to tell the caller that nothing was made.
    const Descriptor folder(::open(folderOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder) {
        ::fsync(folder.get());
    }
    return true;
}

} // namespace kintar::platform
