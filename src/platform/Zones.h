// Time-zone definitions by name, as the operating system keeps them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kintar::platform {

/// A moment split into fields, or the rule for one. As a rule with `year` 0, `day` counts the
/// occurrence of `dayOfWeek` in the month, 5 meaning the last; with any other year it is that date.
struct SystemTime {
    std::uint16_t year = 0;
    std::uint16_t month = 0;     ///< 1 to 12; 0 in a rule: none
    std::uint16_t dayOfWeek = 0; ///< 0 Sunday to 6 Saturday
    std::uint16_t day = 0;
    std::uint16_t hour = 0;
    std::uint16_t minute = 0;
    std::uint16_t second = 0;
    std::uint16_t milliseconds = 0;

    bool operator==(const SystemTime&) const = default;
};

/// The binary record of a zone. Biases are minutes that UTC is ahead of local time; the dates are
/// in the local time that they end.
struct ZoneRecord {
    std::int32_t bias = 0;
    std::int32_t standardBias = 0;
    std::int32_t daylightBias = 0;
    SystemTime standardDate;
    SystemTime daylightDate;

    bool operator==(const ZoneRecord&) const = default;
};

/// The names that a zone carries beside its record.
enum class ZoneName : std::uint8_t { Std, Dlt };

/// The zones of the operating system, each behind a key that is opened, read and closed. Nothing
/// here throws for a zone that is missing or damaged.
class ZoneRegistry {
public:
    using Key = std::size_t;

    virtual ~ZoneRegistry() = default;
    /// A key for reading, or nothing where there is no such zone.
    virtual std::optional<Key> open(const std::string& zone) = 0;
    /// The record, or nothing where it cannot be read.
    virtual std::optional<ZoneRecord> record(Key key) = 0;
    /// A name, cut to `most` bytes, or nothing where it cannot be read.
    virtual std::optional<std::string> name(Key key, ZoneName which, std::size_t most) = 0;
    virtual void close(Key key) = 0;
};

} // namespace kintar::platform
