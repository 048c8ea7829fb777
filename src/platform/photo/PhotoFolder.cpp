#include "platform/photo/PhotoFolder.h"

#include "base/Unicode.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <memory>

namespace kintar::platform {

namespace {

constexpr std::size_t longestName = 1024;
constexpr std::size_t deepestName = 32;
/// Listings kept; a site has one folder of photos, or one a department.
constexpr std::size_t mostListings = 64;
/// A folder that changed this recently may change again without its time of change telling.
constexpr std::time_t settledSeconds = 2;

constexpr int readFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

/// Part by part, following no link at all: for kernels that cannot hold a path below a folder.
Descriptor openPartByPart(int root, const std::string& path, int flags) {
    Descriptor folder(::openat(root, ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    std::size_t start = 0;
    while (folder) {
        const std::size_t slash = path.find('/', start);
        const std::string part = path.substr(start, slash - start);
        if (slash == std::string::npos) {
            return Descriptor(::openat(folder.get(), part.c_str(), flags | O_NOFOLLOW));
        }
        folder = Descriptor(
            ::openat(folder.get(), part.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        start = slash + 1;
    }
    return {};
}

Descriptor openBelow(int root, const std::string& path, int flags) {
    open_how how{};
    how.flags = static_cast<unsigned>(flags);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    const long opened = ::syscall(SYS_openat2, root, path.c_str(), &how, sizeof how);
    if (opened < 0 && (errno == ENOSYS || errno == EPERM)) {
        return openPartByPart(root, path, flags);
    }
    return Descriptor(static_cast<int>(opened));
}

Descriptor plainFileBelow(int root, const std::string& path) {
    Descriptor file = openBelow(root, path, readFlags);
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return {};
    }
    return file;
}

std::string joined(const std::vector<std::string>& parts) {
    std::string path;
    for (const std::string& part : parts) {
        path += (path.empty() ? "" : "/") + part;
    }
    return path;
}

std::multimap<std::string, std::string> namesIn(int folder) {
    std::multimap<std::string, std::string> names;
    Descriptor opened(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const std::unique_ptr<DIR, int (*)(DIR*)> list(opened ? ::fdopendir(opened.get()) : nullptr,
                                                   ::closedir);
    if (!list) {
        return names;
    }
    [[maybe_unused]] const int ownedByList = opened.release();
    while (const dirent* entry = ::readdir(list.get())) {
        names.emplace(unicode::fold(entry->d_name), entry->d_name);
    }
    return names;
}

} // namespace

std::optional<std::vector<std::string>> photoNameParts(std::string_view fileName) {
    const bool drive = fileName.size() >= 2 && fileName[1] == ':' &&
                       std::isalpha(static_cast<unsigned char>(fileName[0])) != 0;
    if (fileName.empty() || fileName.size() > longestName || drive || fileName[0] == '/' ||
        fileName[0] == '\\' || fileName.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    std::vector<std::string> parts;
    while (!fileName.empty()) {
        const std::size_t end = std::min(fileName.find_first_of("/\\"), fileName.size());
        const std::string_view part = fileName.substr(0, end);
        fileName.remove_prefix(std::min(end + 1, fileName.size()));
        if (part == "..") {
            return std::nullopt;
        }
        if (!part.empty() && part != ".") {
            parts.emplace_back(part);
        }
    }
    if (parts.empty() || parts.size() > deepestName) {
        return std::nullopt;
    }
    return parts;
}

Descriptor PhotoFolder::open(const std::string& folder, std::string_view fileName) {
    const std::optional<std::vector<std::string>> parts = photoNameParts(fileName);
    const Descriptor root(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!parts || !root) {
        return {};
    }
    Descriptor file = plainFileBelow(root.get(), joined(*parts));
    if (file) {
        return file;
    }
    const std::optional<std::string> path = actualPath(root.get(), *parts);
    return path ? plainFileBelow(root.get(), *path) : Descriptor();
}

std::optional<std::string> PhotoFolder::actualPath(int root,
                                                   const std::vector<std::string>& parts) {
    std::string path;
    for (const std::string& part : parts) {
        const std::string key = path.empty() ? "." : path;
        const Descriptor folder = openBelow(root, key, O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (!folder) {
            return std::nullopt;
        }
        const std::optional<std::string> name = actualName(key, folder.get(), part);
        if (!name) {
            return std::nullopt;
        }
        path += (path.empty() ? "" : "/") + *name;
    }
    return path;
}

std::optional<std::string> PhotoFolder::actualName(const std::string& key, int folder,
                                                   const std::string& name) {
    struct stat status {};
    if (::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
        return name;
    }
    const Listing& names = listing(key, folder);
    const auto [first, last] = names.namesByFolded.equal_range(unicode::fold(name));
    // Of several, the first in the order of their bytes: the same whenever it is asked.
    const auto least = std::min_element(
        first, last, [](const auto& one, const auto& other) { return one.second < other.second; });
    return least == last ? std::nullopt : std::optional(least->second);
}

const PhotoFolder::Listing& PhotoFolder::listing(const std::string& key, int folder) {
    struct stat status {};
    ::fstat(folder, &status);
    Listing& kept = listings_[key];
    const bool same = kept.device == status.st_dev && kept.node == status.st_ino &&
                      kept.changed.tv_sec == status.st_mtim.tv_sec &&
                      kept.changed.tv_nsec == status.st_mtim.tv_nsec;
    if (same) {
        return kept;
    }
    if (listings_.size() > mostListings) {
        listings_.clear();
    }
    Listing& fresh = listings_[key];
    fresh = {status.st_dev, status.st_ino, status.st_mtim, namesIn(folder)};
    if (std::time(nullptr) - status.st_mtim.tv_sec < settledSeconds) {
        fresh.node = 0; // listed again the next time
    }
    return fresh;
}

} // namespace kintar::platform
