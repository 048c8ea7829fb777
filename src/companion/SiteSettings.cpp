#include "companion/SiteSettings.h"

#include "companion/DatabaseError.h"
#include "companion/dialect/Keyword.h"
#include "companion/postgres/ConnectionText.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>

namespace kintar::companion {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t maximumFileBytes = 65536;
constexpr int longestWait = 600;

// A few keys of one section: read here, since a general reader of such files would accept more than
// a site's file may say, and could not tell the line at fault.
class SettingsReader {
public:
    explicit SettingsReader(std::string_view text) : rest_(text) {}

    SiteSettings read() {
        if (rest_.find('\0') != std::string_view::npos) {
            throw DatabaseError(ErrorKind::Other, "kintar3.ini holds a NUL character.");
        }
        if (rest_.starts_with("\xEF\xBB\xBF")) {
            rest_.remove_prefix(3);
        }
        while (!rest_.empty()) {
            ++lineNumber_;
            const std::size_t end = rest_.find('\n');
            line(trimmed(rest_.substr(0, end)));
            rest_ = end == std::string_view::npos ? std::string_view() : rest_.substr(end + 1);
        }
        return settings_;
    }

private:
    static std::string_view trimmed(std::string_view text) {
        const std::size_t first = text.find_first_not_of(" \t\r");
        const std::size_t last = text.find_last_not_of(" \t\r");
        return first == std::string_view::npos ? std::string_view()
                                               : text.substr(first, last - first + 1);
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw DatabaseError(ErrorKind::Other,
                            "kintar3.ini, line " + std::to_string(lineNumber_) + ": " + what);
    }

    void line(std::string_view text) {
        if (text.empty() || text.front() == ';' || text.front() == '#') {
            return;
        }
        if (text.front() == '[') {
            if (!text.ends_with(']')) {
                fail("a section has no closing bracket.");
            }
            inSite_ = dialect::sameName(text, "[Site]");
            return;
        }
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos) {
            fail("neither a section nor a key with its value.");
        }
        if (inSite_) {
            set(trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1)));
        }
    }

    /// Whether the key is one that takes seconds.
    bool setSeconds(std::string_view key, std::string_view value) {
        ServerLimits& limits = settings_.limits;
        std::chrono::seconds* target = dialect::sameName(key, "ConnectSeconds") ? &limits.connect
                                       : dialect::sameName(key, "StatementSeconds")
                                           ? &limits.statement
                                       : dialect::sameName(key, "AnswerSeconds") ? &limits.answer
                                                                                 : nullptr;
        if (target == nullptr) {
            return false;
        }
        int seconds = 0;
        const auto [end, error] =
            std::from_chars(value.data(), value.data() + value.size(), seconds);
        if (error != std::errc() || end != value.data() + value.size() || seconds < 1 ||
            seconds > longestWait) {
            fail("a time limit is a whole number of seconds from 1 to 600.");
        }
        *target = std::chrono::seconds(seconds);
        return true;
    }

    void set(std::string_view key, std::string_view value) {
        if (setSeconds(key, value)) {
            return;
        }
        std::string* target = dialect::sameName(key, "Database") ? &settings_.database
                              : dialect::sameName(key, "Data")   ? &settings_.data
                              : dialect::sameName(key, "Texts")  ? &settings_.textsTable
                                                                 : nullptr;
        if (target == nullptr) {
            fail("unknown key; there are Database, Data, Texts, ConnectSeconds, "
                 "StatementSeconds and AnswerSeconds.");
        }
        if (value.empty()) {
            fail("a key without a value.");
        }
        *target = value;
    }

    std::string_view rest_;
    SiteSettings settings_;
    std::size_t lineNumber_ = 0;
    bool inSite_ = false;
};

std::string wholePath(const std::string& siteFolder, std::string path) {
    std::ranges::replace(path, '\\', '/');
    std::string whole = (fs::path(siteFolder) / path).lexically_normal().string();
    while (whole.size() > 1 && whole.ends_with('/')) {
        whole.pop_back();
    }
    return whole;
}

bool isName(std::string_view name) {
    return !name.empty() && std::ranges::all_of(name, [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '_';
    });
}

} // namespace

SiteSettings SiteSettings::parse(std::string_view text, const std::string& siteFolder) {
    SiteSettings settings = SettingsReader(text).read();
    if (!isName(settings.textsTable)) {
        throw DatabaseError(ErrorKind::Other, "kintar3.ini: Texts is not the name of a table.");
    }
    if (postgres::isConnectionText(settings.database)) {
        const postgres::ConnectionText checked(settings.database);
    } else {
        settings.database = wholePath(siteFolder, settings.database);
    }
    settings.data = wholePath(siteFolder, settings.data);
    return settings;
}

SiteSettings SiteSettings::read(const std::string& siteFolder) {
    std::error_code error;
    if (siteFolder.empty() || !fs::is_directory(siteFolder, error)) {
        throw DatabaseError(ErrorKind::Missing, "There is no site folder " + siteFolder + ".");
    }
    const std::string path = (fs::path(siteFolder) / "kintar3.ini").string();
    if (!fs::is_regular_file(path, error)) {
        throw DatabaseError(ErrorKind::Missing,
                            "There is no site in " + siteFolder + ": kintar3.ini is missing.");
    }
    std::ifstream file(path, std::ios::binary);
    std::string text(maximumFileBytes + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (file.bad() || (text.empty() && !file.eof())) {
        throw DatabaseError(ErrorKind::Other, "The file " + path + " cannot be read.");
    }
    if (text.size() > maximumFileBytes) {
        throw DatabaseError(ErrorKind::Other, "The file " + path + " is too long.");
    }
    return parse(text, fs::absolute(siteFolder).string());
}

} // namespace kintar::companion
