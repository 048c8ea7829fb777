// Date-times as the database and the windows hold them: no zone, whole seconds.
#pragma once

#include <chrono>
#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace kintar {

/// A moment without a zone, in whole seconds. The default is "never set": 1899-12-30 00:00:00, the
/// day zero of the automation date. Years 100 to 9999.
class DateTime {
public:
    constexpr DateTime() = default;
    constexpr explicit DateTime(std::chrono::local_seconds moment) : moment_(moment) {}

    /// Nothing where a field is out of range (30 February, hour 24, year 99 or 10000).
    static std::optional<DateTime> fromFields(int year, int month, int day, int hour = 0,
                                              int minute = 0, int second = 0);

    /// Reads `2012-03-14`, `2012-03-14T17:05:00` and `2012-03-14 17:05:00`, nothing else.
    static std::optional<DateTime> fromIso(std::string_view text);

    [[nodiscard]] std::chrono::year_month_day date() const;
    /// Hour 0 to 23, minute and second 0 to 59.
    [[nodiscard]] int hour() const;
    [[nodiscard]] int minute() const;
    [[nodiscard]] int second() const;
    [[nodiscard]] constexpr std::chrono::local_seconds moment() const { return moment_; }

    /// The same day at 00:00:00.
    [[nodiscard]] DateTime dateOnly() const;
    /// Midnight exactly: general date shows no time then.
    [[nodiscard]] bool isMidnight() const;
    /// Raises run-time error 6 where the result leaves years 100 to 9999.
    [[nodiscard]] DateTime plusDays(double days) const;
    [[nodiscard]] DateTime plusMinutes(long long minutes) const;

    /// `2012-03-14T17:05:00`, as it goes over the bus.
    [[nodiscard]] std::string iso() const;
    /// `2012-03-14 17:05:00`, as databases hold it.
    [[nodiscard]] std::string isoWithBlank() const;

    constexpr auto operator<=>(const DateTime& other) const = default;

private:
    std::chrono::local_seconds moment_{std::chrono::local_days{
        std::chrono::year{1899} / std::chrono::December / std::chrono::day{30}}};
};

} // namespace kintar
