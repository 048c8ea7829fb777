// Zones and scheduled overrides.
#include "base/RunTimeError.h"
#include "companion/RecordHelper.h"
#include "overrides/OverrideAcceptance.h"
#include "overrides/OverrideCommands.h"
#include "overrides/OverrideTime.h"
#include "overrides/ZoneArithmetic.h"
#include "overrides/objOvrSchedule.h"
#include "platform/SystemClock.h"
#include "platform/SystemZones.h"
#include "tools/explain/Rules.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kintar::explain {
namespace {

std::int16_t as16Bits(std::int32_t value, const char* field) {
    if (value != static_cast<std::int16_t>(value)) {
        throw BadInput("'" + std::string(field) + "' is not a 16-bit integer");
    }
    return static_cast<std::int16_t>(value);
}

std::uint16_t unitOf(std::int32_t value, const char* field) {
    if (!std::in_range<std::uint16_t>(value)) {
        throw BadInput("'" + std::string(field) + "' holds something else than 16-bit numbers");
    }
    return static_cast<std::uint16_t>(value);
}

/// Eight numbers, from the year to the milliseconds.
platform::SystemTime ruleOf(const Json& record, const char* field) {
    required(record, field);
    const std::vector<std::int32_t> list = numbers32(record, field);
    std::array<std::uint16_t, 8> units{};
    if (list.size() != units.size()) {
        throw BadInput("'" + std::string(field) + "' is not a list of eight numbers");
    }
    for (std::size_t i = 0; i < units.size(); ++i) {
        units.at(i) = unitOf(list[i], field);
    }
    return {units[0], units[1], units[2], units[3], units[4], units[5], units[6], units[7]};
}

platform::ZoneRecord recordOf(const Json& record) {
    if (!record.is_object()) {
        throw BadInput("'record' is not an object");
    }
    return {number32(record, "bias"), number32(record, "standardBias"),
            number32(record, "daylightBias"), ruleOf(record, "standardDate"),
            ruleOf(record, "daylightDate")};
}

/// The one zone that the line states, under whatever name.
class StatedZone final : public platform::ZoneRegistry {
public:
    explicit StatedZone(platform::ZoneRecord record) : record_(record) {}
    std::optional<Key> open(const std::string& /*zone*/) override { return 0; }
    std::optional<platform::ZoneRecord> record(Key /*key*/) override { return record_; }
    std::optional<std::string> name(Key /*key*/, platform::ZoneName /*which*/,
                                    std::size_t /*most*/) override {
        return "stated";
    }
    void close(Key /*key*/) override {}

private:
    platform::ZoneRecord record_;
};

platform::ZoneRegistry& systemZones() {
    static const platform::SystemClock clock;
    static platform::SystemZones zones(clock);
    return zones;
}

/// The zones that a line goes by: its own record, or the system's.
class Zones {
public:
    explicit Zones(const Json& input) {
        if (has(input, "record")) {
            stated_.emplace(recordOf(input["record"]));
        }
    }
    platform::ZoneRegistry& registry() {
        return stated_ ? static_cast<platform::ZoneRegistry&>(*stated_) : systemZones();
    }

private:
    std::optional<StatedZone> stated_;
};

/// A clock that stands still: what it says is in no answer.
class StoppedClock final : public platform::Clock {
public:
    [[nodiscard]] DateTime now() const override { return utcNow(); }
    [[nodiscard]] DateTime utcNow() const override {
        return DateTime::fromFields(2000, 1, 1).value_or(DateTime());
    }
};

class NoNotices final : public companion::Notices {
public:
    void writeFailed(const std::string& /*reason*/) override {}
};

/// The location that the line states, and the statements that would be run.
class StatedDatabase final : public OverrideDatabase {
public:
    explicit StatedDatabase(const Json& input)
        : zoneIsThere_(input.contains("zone") || has(input, "record")) {
        if (has(input, "locationRow")) {
            zoneIsThere_ = boolean(input, "locationRow");
        }
        // Read before any rule runs, which would take a wrong type for an error of the database.
        if (has(input, "zone")) {
            zone_ = text(input, "zone");
        } else if (!input.contains("zone") || has(input, "record")) {
            zone_ = "stated";
        }
        const bool asksForDaylightTime = zoneIsThere_ && zone_ && !zone_->empty();
        if (has(input, "useDst") || (asksForDaylightTime && !input.contains("useDst"))) {
            observesDaylightTime_ = boolean(input, "useDst");
        }
    }

    Recordset open(std::string_view sql) override {
        if (sql.starts_with("SELECT TimeZone")) {
            return location();
        }
        // An existing schedule's row, whose columns the line states.
        Recordset row({{"ID", ColumnType::Integer}});
        if (!sql.ends_with(" = 0")) {
            row.addInteger(0);
        }
        return row;
    }
    void execute(std::string_view sql) override { statements.emplace_back(sql); }
    void announceFailure(const std::exception& /*error*/) override {}
    std::string SqlText(std::string_view text) override { return helper_.SqlText(text); }
    std::string SqlDate(DateTime value) override { return helper_.SqlDate(value); }
    void report(const std::exception& /*error*/, std::string_view /*routine*/) override {}

    std::vector<std::string> statements;

private:
    Recordset location() {
        Recordset row({{"TimeZone", ColumnType::Text}, {"DST", ColumnType::YesNo}});
        if (!zoneIsThere_) {
            return row;
        }
        if (zone_) {
            row.addText(*zone_);
        } else {
            row.addNull();
        }
        if (observesDaylightTime_) {
            row.addInteger(*observesDaylightTime_ ? -1 : 0);
        } else {
            row.addNull();
        }
        return row;
    }

    bool zoneIsThere_;
    std::optional<std::string> zone_;          ///< nothing: Null
    std::optional<bool> observesDaylightTime_; ///< nothing: Null
    NoNotices notices_;
    companion::RecordHelper helper_{notices_};
};

/// A field of the record by its name, whatever its case; null where it is absent. `id` is the
/// line's, never the record's.
const Json* fieldOf(const Json& input, std::string_view name) {
    const auto sameLetter = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    };
    for (const auto& [key, value] : input.items()) {
        if (key != "id" && !value.is_null() && std::ranges::equal(key, name, sameLetter)) {
            return &value;
        }
    }
    return nullptr;
}

std::int32_t numberField(const Json& input, const char* name) {
    const Json* value = fieldOf(input, name);
    return value ? number32(Json{{name, *value}}, name) : 0;
}

DateTime dateField(const Json& input, const char* name) {
    const Json* value = fieldOf(input, name);
    return value ? dateTime(Json{{name, *value}}, name) : DateTime();
}

/// A schedule with the fields that a line states, and what it stands on.
class StatedSchedule {
public:
    explicit StatedSchedule(const Json& input)
        : zones_(input), database_(input),
          schedule_({database_, clock_, zones_.registry(), [] {}}) {
        const Json* isAdd = fieldOf(input, "IsAdd");
        const bool adds = isAdd ? boolean(Json{{"IsAdd", *isAdd}}, "IsAdd") : false;
        schedule_.Create(adds ? 0 : numberField(input, "ID"));
        schedule_.PointID(numberField(input, "PointID"));
        schedule_.PointType(as16Bits(numberField(input, "PointType"), "PointType"));
        schedule_.StartCmd(numberField(input, "StartCmd"));
        schedule_.StopCmd(numberField(input, "StopCmd"));
        schedule_.StartDate(dateField(input, "StartDate"));
        schedule_.StopDate(dateField(input, "StopDate"));
        const Json* opr = fieldOf(input, "Opr");
        schedule_.Opr(opr ? text(Json{{"Opr", *opr}}, "Opr") : std::string());
        schedule_.OprID(numberField(input, "OprID"));
        schedule_.Status(numberField(input, "Status"));
        schedule_.IsAdd(adds);
        id_ = numberField(input, "ID");
        database_.statements.clear();
    }

    objOvrSchedule& operator*() { return schedule_; }
    objOvrSchedule* operator->() { return &schedule_; }
    [[nodiscard]] const std::vector<std::string>& statements() const {
        return database_.statements;
    }
    [[nodiscard]] Json fields() const {
        return {{"ID", id_},
                {"PointID", schedule_.PointID()},
                {"PointType", schedule_.PointType()},
                {"StartCmd", schedule_.StartCmd()},
                {"StartDate", schedule_.StartDate().iso()},
                {"StopCmd", schedule_.StopCmd()},
                {"StopDate", schedule_.StopDate().iso()},
                {"Opr", schedule_.Opr()},
                {"OprID", schedule_.OprID()},
                {"Status", schedule_.Status()},
                {"IsAdd", schedule_.IsAdd()}};
    }

private:
    Zones zones_;
    StatedDatabase database_;
    StoppedClock clock_;
    objOvrSchedule schedule_;
    std::int32_t id_ = 0;
};

int sliderOf(const Json& input, const char* field) {
    const std::int32_t slider = number32(input, field);
    if (slider < 0 || slider > lastStep) {
        throw BadInput("'" + std::string(field) + "' is not a quarter of a day, 0 to 95");
    }
    return slider;
}

/// Minutes from UTC; none where the field is absent or null.
std::int16_t offsetOf(const Json& input, const char* field) {
    return as16Bits(number32Or(input, field, 0), field);
}

/// The command whose button a record's code selects in the editor, 0 where it has none.
std::int32_t chosenCommand(std::int32_t code) {
    OverrideOptions options;
    for (const OverrideCommand command : overrideCommands) {
        options.makeAvailable(command, true);
    }
    options.selectCode(code);
    return static_cast<std::int32_t>(options.selected());
}

std::vector<AdditionalDay> daysOf(const Json& input) {
    std::vector<AdditionalDay> days;
    if (!has(input, "additionalDays")) {
        return days;
    }
    const Json& list = input["additionalDays"];
    if (!list.is_array()) {
        throw BadInput("'additionalDays' is not a list");
    }
    for (const Json& day : list) {
        if (!day.is_object()) {
            throw BadInput("'additionalDays' holds something else than objects");
        }
        days.push_back({"", dateTime(day, "start").dateOnly(), dateTime(day, "stop").dateOnly()});
    }
    return days;
}

std::string dateText(DateTime date) {
    constexpr std::size_t length = 10;
    return date.iso().substr(0, length);
}

} // namespace

void applyZone(const Json& input, Answer& answer) {
    Zones zones(input);
    TimeZoneInformation information;
    const std::string name = textOrEmpty(input, "zone");
    if (!name.empty() || has(input, "record")) {
        platform::ZoneRecord record;
        LoadZoneInfo(information, record, name, boolean(input, "useDst"), zones.registry());
    }
    DateTime moment = dateTime(input, "moment");
    const bool toUtc = boolean(input, "toUtc");
    bool ok = false;
    try {
        ok = ConvertTime(moment, toUtc, information);
    } catch (const RunTimeError&) {
        // Behind the last year there is: not converted either.
    }
    answer.add("moment", moment.iso()).add("ok", ok);
}

void applyOverrideSave(const Json& input, Answer& answer) {
    StatedSchedule schedule(input);
    const bool result = schedule->Save();
    const std::vector<std::string>& statements = schedule.statements();
    answer.add("sql", statements.empty() ? Json() : Json(statements.front()))
        .add("result", result)
        .add("after", schedule.fields());
}

void applyOverrideCorrection(const Json& input, Answer& answer) {
    OverrideTime time{dateTime(input, "date").dateOnly(), sliderOf(input, "slider")};
    const OverrideOffsets offsets{offsetOf(input, "locTimeDiff"), offsetOf(input, "sysTimeDiff")};
    if (boolean(input, "isAdd")) {
        time = notInThePast(time, dateTime(input, "now"), offsets);
    }
    answer.add("date", dateText(time.date))
        .add("slider", time.slider)
        .add("moment", time.moment().iso());
}

void applyOverrideAccept(const Json& input, Answer& answer) {
    StatedSchedule schedule(input);
    const int startSlider = sliderOf(input, "startSlider");
    const int stopSlider = sliderOf(input, "stopSlider");
    std::vector<AdditionalDay> days = daysOf(input);
    schedule->StartDate(OverrideTime{schedule->StartDate().dateOnly(), startSlider}.moment());
    schedule->StopDate(OverrideTime{schedule->StopDate().dateOnly(), stopSlider}.moment());
    schedule->StartCmd(chosenCommand(schedule->StartCmd()));
    schedule->StopCmd(chosenCommand(schedule->StopCmd()));
    const OverrideVerdict verdict = validateOverride(*schedule);
    if (verdict == OverrideVerdict::Valid) {
        saveOverride(*schedule, startSlider, stopSlider, days);
    }
    answer
        .add("outcome", verdict == OverrideVerdict::Valid   ? "ok"
                        : verdict == OverrideVerdict::Dates ? "dates"
                                                            : "command")
        .add("statements", schedule.statements());
}

} // namespace kintar::explain
