#include "tools/site/SiteSettings.h"

#include "base/RunTimeError.h"
#include "companion/SiteSettings.h"
#include "tools/site/SiteMaker.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kintar::site {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestSettings = 65'536;

/// An open file; closed at the end of its block.
class Descriptor {
public:
    explicit Descriptor(const fs::path& path)
        : number_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) {
            ::close(number_);
        }
    }
    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

std::string openProblem() {
    if (errno == ENOENT) {
        return "is missing";
    }
    if (errno == ELOOP) {
        return "is a link";
    }
    return std::string("cannot be read: ") + std::strerror(errno);
}

std::optional<std::string> readUpTo(int descriptor, std::size_t limit) {
    std::string content(limit + 1, '\0');
    std::size_t filled = 0;
    while (filled < content.size()) {
        const ssize_t got = ::read(descriptor, content.data() + filled, content.size() - filled);
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            break;
        }
        filled += static_cast<std::size_t>(got);
    }
    content.resize(filled);
    return content;
}

} // namespace

std::optional<std::string> readCheckedFile(const fs::path& path, const std::string& where,
                                           std::size_t limit, Findings& findings) {
    const Descriptor file(path);
    struct stat status {};
    if (file.number() < 0) {
        findings.add(where, openProblem());
        return std::nullopt;
    }
    if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        findings.add(where, "is no regular file");
        return std::nullopt;
    }
    std::optional<std::string> content = readUpTo(file.number(), limit);
    if (!content) {
        findings.add(where, openProblem());
    } else if (content->size() > limit) {
        findings.add(where, "is larger than " + std::to_string(limit) + " bytes");
        content.reset();
    }
    return content;
}

std::optional<SiteSettings> readSettings(const fs::path& site, Findings& findings) {
    const std::optional<std::string> content =
        readCheckedFile(site / settingsFile, settingsFile, largestSettings, findings);
    if (!content) {
        return std::nullopt;
    }
    try {
        const companion::SiteSettings settings =
            companion::SiteSettings::parse(*content, fs::absolute(site).string());
        return SiteSettings{settings.database, settings.data, settings.textsTable};
    } catch (const RunTimeError& error) {
        findings.add(settingsFile, error.what());
        return std::nullopt;
    }
}

} // namespace kintar::site
