#include "platform/SystemLocale.h"

#include <QLocale>
#include <QString>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace kintar::platform {

namespace {

/// A field of a toolkit's pattern (a run of one letter, or AM/PM as "AP") or the text between two.
struct Part {
    bool isField = false;
    std::string text;
};

std::size_t quotedLength(std::string_view rest) {
    const std::size_t end = rest.find('\'', 1);
    return end == std::string_view::npos ? rest.size() : end + 1;
}

std::size_t runLength(std::string_view rest) {
    const std::size_t end = rest.find_first_not_of(rest.front());
    return end == std::string_view::npos ? rest.size() : end;
}

bool isAmPm(std::string_view rest) {
    return rest.size() >= 2 && (rest[0] == 'a' || rest[0] == 'A') &&
           (rest[1] == 'p' || rest[1] == 'P');
}

/// Words, direction marks and brackets are left out of separators; only these stand in them.
bool isSeparator(char c) {
    return c == '.' || c == '/' || c == '-' || c == ',' || c == ':' || c == ' ';
}

void addSeparator(std::vector<Part>& parts, char c) {
    if (parts.empty() || parts.back().isField) {
        parts.push_back({});
    }
    parts.back().text += c;
}

std::vector<Part> partsOf(std::string_view pattern) {
    std::vector<Part> parts;
    while (!pattern.empty()) {
        std::size_t length = 1;
        if (pattern.front() == '\'') {
            length = quotedLength(pattern);
        } else if (isAmPm(pattern)) {
            length = 2;
            parts.push_back({true, "AP"});
        } else if (std::isalpha(static_cast<unsigned char>(pattern.front())) != 0) {
            length = runLength(pattern);
            parts.push_back({true, std::string(pattern.substr(0, length))});
        } else if (isSeparator(pattern.front())) {
            addSeparator(parts, pattern.front());
        } else if (pattern.starts_with("\xC2\xA0") || pattern.starts_with("\xE2\x80\xAF")) {
            // The blanks that do not break become ordinary ones.
            length = pattern.front() == '\xC2' ? 2 : 3;
            addSeparator(parts, ' ');
        }
        pattern.remove_prefix(length);
    }
    return parts;
}

/// What stands behind a blank at the end of a date belongs to a word that was left out.
std::string withoutTail(std::string pattern) {
    const std::size_t lastField = pattern.find_last_of("yMd");
    if (lastField != std::string::npos) {
        pattern.resize(std::min(pattern.find(' ', lastField), pattern.size()));
    }
    return pattern;
}

/// "de_DE" of "de_DE.UTF-8@euro".
std::string bareName(std::string_view name) {
    return std::string(name.substr(0, name.find_first_of(".@")));
}

std::string timeLocaleName() {
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && value[0] != '\0') {
            return value;
        }
    }
    return "C";
}

} // namespace

std::string shortDatePattern(std::string_view toolkitPattern) {
    std::string pattern;
    for (const Part& part : partsOf(toolkitPattern)) {
        if (!part.isField) {
            pattern += part.text;
        } else if (part.text.front() == 'y') {
            pattern += "yyyy";
        } else if (part.text.front() == 'M' || part.text.front() == 'd') {
            pattern += part.text.substr(0, 2);
        }
    }
    return withoutTail(std::move(pattern));
}

std::string longTimePattern(std::string_view toolkitPattern) {
    std::string hour = "H";
    bool amPmFirst = false;
    bool amPm = false;
    bool hourSeen = false;
    bool points = false;
    for (const Part& part : partsOf(toolkitPattern)) {
        const char kind = part.text.front();
        if (part.isField && (kind == 'h' || kind == 'H')) {
            hour = part.text.substr(0, 2);
            hourSeen = true;
        } else if (part.isField && part.text == "AP") {
            amPm = true;
            amPmFirst = !hourSeen;
        } else if (!part.isField && kind == '.' && hourSeen) {
            points = true;
        }
    }
    if (!amPm) {
        // Hours on 12 without AM/PM could not be read back.
        hour.assign(hour.size(), 'H');
    }
    const std::string separator = points ? "." : ":";
    std::string time = hour + separator + "mm" + separator + "ss";
    if (!amPm) {
        return time;
    }
    return amPmFirst ? "AP " + time : time + " AP";
}

std::optional<LocaleFormats> localeFormats(std::string_view name) {
    if (name == "iso") {
        return LocaleFormats{"yyyy-MM-dd", "HH:mm:ss"};
    }
    const std::string bare = bareName(name);
    if (bare == "C" || bare == "POSIX") {
        return LocaleFormats{};
    }
    const QLocale locale(QString::fromStdString(bare));
    if (locale.language() == QLocale::C) {
        return std::nullopt;
    }
    return LocaleFormats{shortDatePattern(locale.dateFormat(QLocale::ShortFormat).toStdString()),
                         longTimePattern(locale.timeFormat(QLocale::LongFormat).toStdString())};
}

LocaleFormats systemLocaleFormats() {
    return localeFormats(timeLocaleName()).value_or(LocaleFormats{});
}

} // namespace kintar::platform
