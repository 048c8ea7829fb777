#include "tools/site/SiteSettings.h"

#include "tools/site/SiteMaker.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <sstream>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kintar::site {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestSettings = 64 * 1024;

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

std::string trimmed(const std::string& text) {
    constexpr const char* blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) {
        return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    });
    return text;
}

/// The keys of the section `[Site]`, in lower case.
std::map<std::string, std::string> siteKeys(const std::string& content, Findings& findings) {
    std::map<std::string, std::string> keys;
    std::istringstream lines(content);
    bool inSection = false;
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        line = trimmed(line);
        const std::size_t equals = line.find('=');
        if (line.empty() || line.front() == ';' || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            inSection = lowerCase(line) == "[site]";
        } else if (equals == std::string::npos) {
            findings.add(settingsFile,
                         "line " + std::to_string(number) + " is neither a section nor KEY=VALUE");
        } else if (inSection) {
            keys[lowerCase(trimmed(line.substr(0, equals)))] = trimmed(line.substr(equals + 1));
        }
    }
    return keys;
}

std::optional<fs::path> pathOf(const fs::path& site, const std::map<std::string, std::string>& keys,
                               const char* key, Findings& findings) {
    const auto found = keys.find(lowerCase(key));
    if (found == keys.end() || found->second.empty()) {
        findings.add(settingsFile, std::string("[Site] has no ") + key);
        return std::nullopt;
    }
    std::string value = found->second;
    if (value.find('\0') != std::string::npos) {
        findings.add(settingsFile, std::string(key) + " is no path");
        return std::nullopt;
    }
    std::ranges::replace(value, '\\', '/');
    return site / value;
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
    const std::map<std::string, std::string> keys = siteKeys(*content, findings);
    const std::optional<fs::path> database = pathOf(site, keys, "Database", findings);
    const std::optional<fs::path> data = pathOf(site, keys, "Data", findings);
    if (!database || !data) {
        return std::nullopt;
    }
    return SiteSettings{*database, *data};
}

} // namespace kintar::site
