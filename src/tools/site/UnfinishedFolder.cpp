#include "tools/site/UnfinishedFolder.h"

#include "tools/site/SiteError.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kintar::site {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view unnamed = "XXXXXX";

std::string beginningFor(const fs::path& place) {
    return "." + place.filename().string() + ".unfinished-";
}

/// A folder, opened and locked; empty where it is a link, is locked by somebody or is not there.
platform::Descriptor locked(const fs::path& folder) {
    platform::Descriptor opened(
        ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (opened && ::flock(opened.get(), LOCK_EX | LOCK_NB) != 0) {
        opened.reset();
    }
    return opened;
}

bool isOwn(const platform::Descriptor& folder) {
    struct stat status {};
    return ::fstat(folder.get(), &status) == 0 && status.st_uid == ::geteuid();
}

/// Between making and locking it, somebody who clears up may have taken it for abandoned.
bool isStillThere(const platform::Descriptor& folder) {
    struct stat status {};
    return ::fstat(folder.get(), &status) == 0 && status.st_nlink > 0;
}

} // namespace

UnfinishedFolder::UnfinishedFolder(const fs::path& place) {
    while (!lock_) {
        std::string name =
            (place.parent_path() / (beginningFor(place) + std::string(unnamed))).string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw SiteError("cannot make a folder in " + place.parent_path().string() + ": " +
                            std::strerror(errno));
        }
        lock_ = locked(name);
        if (lock_ && !isStillThere(lock_)) {
            lock_.reset();
        }
        path_ = name;
    }
}

UnfinishedFolder::~UnfinishedFolder() {
    if (!path_.empty()) {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
}

void UnfinishedFolder::moveTo(const fs::path& place, fs::perms permissions) {
    fs::permissions(path_, permissions);
    std::error_code error;
    // Over an empty folder, and refused where something has appeared in it meanwhile.
    fs::rename(path_, place, error);
    if (error) {
        throw SiteError("cannot move the finished site to " + place.string() + ": " +
                        error.message());
    }
    path_.clear();
}

void removeAbandoned(const fs::path& place) {
    const std::string beginning = beginningFor(place);
    std::vector<fs::path> candidates;
    std::error_code error;
    for (fs::directory_iterator entry(place.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(beginning) && name.size() == beginning.size() + unnamed.size()) {
            candidates.push_back(entry->path());
        }
    }
    for (const fs::path& candidate : candidates) {
        const platform::Descriptor folder = locked(candidate);
        if (folder && isOwn(folder)) {
            fs::remove_all(candidate, error);
        }
    }
}

} // namespace kintar::site
