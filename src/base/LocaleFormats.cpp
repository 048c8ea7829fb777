#include "base/LocaleFormats.h"

#include "base/RunTimeError.h"

#include <cctype>
#include <optional>

namespace kintar {
namespace {

constexpr int noonHour = 12;

std::string padded(int value, std::size_t width) {
    std::string text = std::to_string(value);
    return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

int hour12(int hour) {
    const int of12 = hour % noonHour;
    return of12 == 0 ? noonHour : of12;
}

/// One part of a pattern: a run of one letter, `AP`, or a single other character.
std::string_view nextPart(std::string_view pattern) {
    if (pattern.starts_with("AP")) {
        return pattern.substr(0, 2);
    }
    std::size_t length = 1;
    if (std::isalpha(static_cast<unsigned char>(pattern.front())) != 0) {
        while (length < pattern.size() && pattern[length] == pattern.front()) {
            ++length;
        }
    }
    return pattern.substr(0, length);
}

std::string formatPart(std::string_view part, DateTime value) {
    switch (part.front()) {
    case 'y':
        return padded(static_cast<int>(value.date().year()), 4);
    case 'M':
        return padded(static_cast<int>(static_cast<unsigned>(value.date().month())), part.size());
    case 'd':
        return padded(static_cast<int>(static_cast<unsigned>(value.date().day())), part.size());
    case 'h':
        return padded(hour12(value.hour()), part.size());
    case 'H':
        return padded(value.hour(), part.size());
    case 'm':
        return padded(value.minute(), part.size());
    case 's':
        return padded(value.second(), part.size());
    default:
        break;
    }
    if (part == "AP") {
        return value.hour() < noonHour ? "AM" : "PM";
    }
    return std::string(part);
}

std::string format(std::string_view pattern, DateTime value) {
    std::string text;
    while (!pattern.empty()) {
        const std::string_view part = nextPart(pattern);
        text += formatPart(part, value);
        pattern.remove_prefix(part.size());
    }
    return text;
}

/// Reads a text from the front. Each `take` advances only where it succeeds.
class Reader {
public:
    explicit Reader(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool atEnd() const { return rest_.empty(); }

    std::optional<int> takeNumber(std::size_t least, std::size_t most) {
        std::size_t length = 0;
        int value = 0;
        while (length < rest_.size() && length < most && isDigit(rest_[length])) {
            value = value * 10 + (rest_[length] - '0');
            ++length;
        }
        const bool more = length < rest_.size() && isDigit(rest_[length]);
        if (length < least || more) {
            return std::nullopt;
        }
        rest_.remove_prefix(length);
        return value;
    }

    bool take(std::string_view expected) {
        if (!rest_.starts_with(expected)) {
            return false;
        }
        rest_.remove_prefix(expected.size());
        return true;
    }

    bool takeBlanks() {
        bool any = false;
        while (!rest_.empty() && rest_.front() == ' ') {
            rest_.remove_prefix(1);
            any = true;
        }
        return any;
    }

    /// AM or PM, in either case; nothing where neither stands here.
    std::optional<bool> takeIsPm() {
        if (rest_.size() < 2 || std::toupper(static_cast<unsigned char>(rest_[1])) != 'M') {
            return std::nullopt;
        }
        const int first = std::toupper(static_cast<unsigned char>(rest_[0]));
        if (first != 'A' && first != 'P') {
            return std::nullopt;
        }
        rest_.remove_prefix(2);
        return first == 'P';
    }

private:
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

    std::string_view rest_;
};

/// Year, month and day in the order and with the separators of a date pattern.
std::optional<DateTime> takeDate(Reader& reader, std::string_view pattern) {
    Reader ahead = reader;
    int year = 0;
    int month = 0;
    int day = 0;
    while (!pattern.empty()) {
        const std::string_view part = nextPart(pattern);
        pattern.remove_prefix(part.size());
        const char kind = part.front();
        if (kind != 'y' && kind != 'M' && kind != 'd') {
            if (!ahead.take(part)) {
                return std::nullopt;
            }
            continue;
        }
        const std::optional<int> number =
            kind == 'y' ? ahead.takeNumber(4, 4) : ahead.takeNumber(1, 2);
        if (!number) {
            return std::nullopt;
        }
        (kind == 'y' ? year : kind == 'M' ? month : day) = *number;
    }
    const std::optional<DateTime> date = DateTime::fromFields(year, month, day);
    if (date) {
        reader = ahead;
    }
    return date;
}

struct TimeOfDay {
    int hour = 0;
    int minute = 0;
    int second = 0;
};

/// The separator between hours and minutes of a time pattern.
char timeSeparator(std::string_view pattern) {
    while (!pattern.empty()) {
        const std::string_view part = nextPart(pattern);
        if (part == "." || part == ":") {
            return part.front();
        }
        pattern.remove_prefix(part.size());
    }
    return ':';
}

/// Hours on 24 from hours on 12, or nothing where they do not fit.
std::optional<int> hourOf24(int hour, std::optional<bool> isPm) {
    if (!isPm) {
        return hour;
    }
    if (hour < 1 || hour > noonHour) {
        return std::nullopt;
    }
    return hour % noonHour + (*isPm ? noonHour : 0);
}

/// `5:05 PM`, `17:05:00`, `PM 5:05:00`: minutes must stand there, seconds need not.
std::optional<TimeOfDay> takeTime(Reader& reader, char separator) {
    Reader ahead = reader;
    std::optional<bool> isPm = ahead.takeIsPm();
    if (isPm) {
        ahead.takeBlanks();
    }
    const auto takeSeparator = [&] {
        return ahead.take(":") || ahead.take(std::string_view(&separator, 1));
    };
    const std::optional<int> hour = ahead.takeNumber(1, 2);
    if (!hour || !takeSeparator()) {
        return std::nullopt;
    }
    const std::optional<int> minute = ahead.takeNumber(1, 2);
    std::optional<int> second = 0;
    if (minute && takeSeparator()) {
        second = ahead.takeNumber(1, 2);
    }
    if (!minute || !second) {
        return std::nullopt;
    }
    if (!isPm) {
        Reader behindBlanks = ahead;
        behindBlanks.takeBlanks();
        isPm = behindBlanks.takeIsPm();
        if (isPm) {
            ahead = behindBlanks;
        }
    }
    const std::optional<int> hour24 = hourOf24(*hour, isPm);
    if (!hour24) {
        return std::nullopt;
    }
    reader = ahead;
    return TimeOfDay{*hour24, *minute, *second};
}

} // namespace

std::string LocaleFormats::formatShortDate(DateTime value) const {
    return format(shortDate, value);
}

std::string LocaleFormats::formatLongTime(DateTime value) const {
    return format(longTime, value);
}

std::string LocaleFormats::formatGeneralDate(DateTime value) const {
    return value.isMidnight() ? formatShortDate(value)
                              : formatShortDate(value) + " " + formatLongTime(value);
}

DateTime LocaleFormats::parse(std::string_view text) const {
    while (text.ends_with(' ')) {
        text.remove_suffix(1);
    }
    Reader reader(text);
    reader.takeBlanks();
    std::optional<DateTime> date = takeDate(reader, shortDate);
    if (!date) {
        date = takeDate(reader, "yyyy-MM-dd");
    }
    if (date && reader.atEnd()) {
        return *date;
    }
    if (date && !reader.take("T") && !reader.takeBlanks()) {
        throw RunTimeError::typeMismatch();
    }
    reader.takeBlanks();
    const std::optional<TimeOfDay> time = takeTime(reader, timeSeparator(longTime));
    if (!time || !reader.atEnd()) {
        throw RunTimeError::typeMismatch();
    }
    const std::chrono::year_month_day day = date.value_or(DateTime()).date();
    const std::optional<DateTime> value = DateTime::fromFields(
        static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
        static_cast<int>(static_cast<unsigned>(day.day())), time->hour, time->minute, time->second);
    if (!value) {
        throw RunTimeError::typeMismatch();
    }
    return *value;
}

std::string formatBlankTime24(DateTime value) {
    return format(" HH:mm:ss", value);
}

} // namespace kintar
