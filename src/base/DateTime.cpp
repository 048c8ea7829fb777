#include "base/DateTime.h"

#include "base/FixedDigits.h"
#include "base/RunTimeError.h"

#include <cmath>

namespace kintar {
namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::hh_mm_ss;
using std::chrono::local_days;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::year_month_day;

constexpr int firstYear = 100;
constexpr int lastYear = 9999;

hh_mm_ss<seconds> timeOfDay(std::chrono::local_seconds moment) {
    return hh_mm_ss<seconds>(moment - floor<days>(moment));
}

DateTime checked(std::chrono::local_seconds moment) {
    const int year = static_cast<int>(year_month_day(floor<days>(moment)).year());
    if (year < firstYear || year > lastYear) {
        throw RunTimeError::overflow();
    }
    return DateTime(moment);
}

/// The number in `text` at `start`, exactly `length` digits; -1 where they are not digits.
int digits(std::string_view text, std::size_t start, std::size_t length) {
    int value = 0;
    for (std::size_t i = start; i < start + length; ++i) {
        if (i >= text.size() || text[i] < '0' || text[i] > '9') {
            return -1;
        }
        value = value * 10 + (text[i] - '0');
    }
    return value;
}

bool hasAt(std::string_view text, std::size_t position, char c) {
    return position < text.size() && text[position] == c;
}

} // namespace

std::optional<DateTime> DateTime::fromFields(int year, int month, int day, int hour, int minute,
                                             int second) {
    if (year < firstYear || year > lastYear || month < 1 || day < 1 || hour < 0 || hour > 23 ||
        minute < 0 || minute > 59 || second < 0 || second > 59) {
        return std::nullopt;
    }
    const year_month_day date{std::chrono::year{year},
                              std::chrono::month{static_cast<unsigned>(month)},
                              std::chrono::day{static_cast<unsigned>(day)}};
    if (!date.ok()) {
        return std::nullopt;
    }
    return DateTime(local_days(date) + std::chrono::hours(hour) + minutes(minute) +
                    seconds(second));
}

std::optional<DateTime> DateTime::fromIso(std::string_view text) {
    constexpr std::size_t dateLength = 10;
    constexpr std::size_t fullLength = 19;
    const int year = digits(text, 0, 4);
    const int month = digits(text, 5, 2);
    const int day = digits(text, 8, 2);
    if (!hasAt(text, 4, '-') || !hasAt(text, 7, '-') || year < 0) {
        return std::nullopt;
    }
    if (text.size() == dateLength) {
        return fromFields(year, month, day);
    }
    if (text.size() != fullLength || (!hasAt(text, 10, 'T') && !hasAt(text, 10, ' ')) ||
        !hasAt(text, 13, ':') || !hasAt(text, 16, ':')) {
        return std::nullopt;
    }
    return fromFields(year, month, day, digits(text, 11, 2), digits(text, 14, 2),
                      digits(text, 17, 2));
}

year_month_day DateTime::date() const {
    return year_month_day(floor<days>(moment_));
}

int DateTime::hour() const {
    return static_cast<int>(timeOfDay(moment_).hours().count());
}

int DateTime::minute() const {
    return static_cast<int>(timeOfDay(moment_).minutes().count());
}

int DateTime::second() const {
    return static_cast<int>(timeOfDay(moment_).seconds().count());
}

DateTime DateTime::dateOnly() const {
    return DateTime(floor<days>(moment_));
}

bool DateTime::isMidnight() const {
    return *this == dateOnly();
}

DateTime DateTime::plusDays(double days) const {
    constexpr double secondsOfDay = 86400;
    constexpr double mostDays = 4.0e6; // more than all years of the calendar
    if (!(std::fabs(days) < mostDays)) {
        throw RunTimeError::overflow();
    }
    return checked(moment_ + seconds(std::llround(days * secondsOfDay)));
}

DateTime DateTime::plusMinutes(long long minutes) const {
    constexpr long long mostMinutes = 6'000'000'000; // more than all years of the calendar
    if (minutes > mostMinutes || minutes < -mostMinutes) {
        throw RunTimeError::overflow();
    }
    return checked(moment_ + std::chrono::minutes(minutes));
}

std::string DateTime::iso() const {
    std::string text = isoWithBlank();
    text[10] = 'T';
    return text;
}

std::string DateTime::isoWithBlank() const {
    const std::chrono::local_days day = floor<days>(moment_);
    const year_month_day date(day);
    const hh_mm_ss<seconds> time(moment_ - day);
    std::string text = "0000-00-00 00:00:00";
    putDigits(text.data(), static_cast<unsigned>(static_cast<int>(date.year())), 4);
    putDigits(text.data() + 5, static_cast<unsigned>(date.month()), 2);
    putDigits(text.data() + 8, static_cast<unsigned>(date.day()), 2);
    putDigits(text.data() + 11, static_cast<unsigned>(time.hours().count()), 2);
    putDigits(text.data() + 14, static_cast<unsigned>(time.minutes().count()), 2);
    putDigits(text.data() + 17, static_cast<unsigned>(time.seconds().count()), 2);
    return text;
}

} // namespace kintar
