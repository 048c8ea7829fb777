#include "overrides/objOvrSchedule.h"

#include "overrides/ZoneArithmetic.h"
#include "server/IgnoringErrors.h"

#include <memory>

namespace kintar {
namespace {

constexpr std::int32_t openCommand = 1;
constexpr std::int32_t timeZoneCommand = 3;
constexpr std::int32_t armCommand = 4;
constexpr std::int16_t firstGroupType = 2;

// Two blanks before FROM: meant so.
std::string locationQuery(std::int16_t pointType, std::int32_t pointId) {
    const std::string where = pointType >= firstGroupType
                                  ? "(Select LocGrp From OvrGrpName Where ID = "
                                  : "(Select Loc From IO Where ID = ";
    return "SELECT TimeZone, DST  FROM Loc Where Loc IN " + where + std::to_string(pointId) + ")";
}

FieldValue notNull(const Recordset& row, std::string_view column) {
    const FieldValue value = row.field(column);
    if (value.isNull()) {
        throw RunTimeError::invalidNull();
    }
    return value;
}

} // namespace

bool objOvrSchedule::Create(std::int32_t ID) {
    ID_ = ID;
    ignoringErrors([this] {
        const Recordset rows =
            services_.database.open("SELECT * FROM OvrSchedule WHERE ID = " + std::to_string(ID_));
        services_.runPendingWindowMessages();
        if (rows.RecordCount() < 1) {
            SetDefaults();
        } else {
            LoadRecord(rows);
        }
        // A new schedule's local "now" goes through the conversion as if it were UTC: meant so.
        AdjustTimes(false);
    });
    return false;
}

void objOvrSchedule::SetDefaults() {
    IsAdd_ = true;
    ID_ = 0;
    StartDate_ = services_.clock.now();
    StopDate_ = StartDate_;
    services_.runPendingWindowMessages();
    Opr_.clear();
    OprID_ = 0;
    Status_ = 0;
    StopCmd_ = timeZoneCommand;
    StartCmd_ = PointType_ == 0 || PointType_ == 2 ? openCommand : armCommand;
}

void objOvrSchedule::LoadRecord(const Recordset& row) {
    IsAdd_ = false;
    // A column that cannot be read keeps what the field held; the others are read all the same.
    const auto readLong = [&row](std::int32_t& field, std::string_view column) {
        ignoringErrors([&] { field = row.field(column).asLong(); });
    };
    const auto readDate = [&row](DateTime& field, std::string_view column) {
        ignoringErrors([&] { field = row.field(column).asDateTime(); });
    };
    readLong(PointID_, "PointID");
    ignoringErrors([&] { PointType_ = row.field("PointType").asInteger(); });
    readLong(StartCmd_, "StartCmd");
    readDate(StartDate_, "StartDate");
    services_.runPendingWindowMessages();
    readLong(StopCmd_, "StopCmd");
    readDate(StopDate_, "StopDate");
    ignoringErrors([&] { Opr_ = notNull(row, "Opr").text(); });
    readLong(OprID_, "OprID");
    readLong(Status_, "Status");
}

void objOvrSchedule::setWorkstationOffset() {
    // Both clocks are read within one second, or their difference is a minute off now and then.
    DateTime utc;
    DateTime now;
    do {
        utc = services_.clock.utcNow();
        now = services_.clock.now();
    } while (services_.clock.utcNow() != utc);
    LocTimeDiff_ = wholeMinutes(utc, now);
    SysTimeDiff_ = LocTimeDiff_;
}

void objOvrSchedule::AdjustTimes(bool toUTC) {
    LocTimeDiff_ = 0;
    zone_ = {};
    const Recordset location = services_.database.open(locationQuery(PointType_, PointID_));
    setWorkstationOffset();
    if (location.RecordCount() < 1) {
        return;
    }
    TimeZoneInformation information;
    zone_ = {OverrideZone::Kind::Utc, notNull(location, "TimeZone").text(), false};
    if (!zone_.name.empty()) {
        // The workstation's now stands in for UTC: near a change the offset may be the other one.
        const DateTime kept = services_.clock.now();
        DateTime probe = kept;
        platform::ZoneRecord record;
        zone_.observesDaylightTime = notNull(location, "DST").asBoolean();
        LoadZoneInfo(information, record, zone_.name, zone_.observesDaylightTime, services_.zones);
        if (information.StandardName.front() != 0) {
            zone_.kind = OverrideZone::Kind::Zone;
        }
        ConvertTime(probe, false, information);
        LocTimeDiff_ = wholeMinutes(kept, probe);
    }
    ConvertTime(StartDate_, toUTC, information);
    ConvertTime(StopDate_, toUTC, information);
}

std::string objOvrSchedule::insertStatement() const {
    OverrideDatabase& database = services_.database;
    return "INSERT INTO OvrSchedule (PointID, PointType, StartCmd, StopCmd, Opr, OprID, Status, "
           "StartDate, StopDate) Values (" +
           std::to_string(PointID_) + ", " + std::to_string(PointType_) + ", " +
           std::to_string(StartCmd_) + ", " + std::to_string(StopCmd_) + ", " +
           database.SqlText(Opr_) + ", " + std::to_string(OprID_) + ", " + std::to_string(Status_) +
           ", " + database.SqlDate(StartDate_) + ", " + database.SqlDate(StopDate_) + ")";
}

std::string objOvrSchedule::updateStatement() const {
    OverrideDatabase& database = services_.database;
    return "UPDATE OvrSchedule SET StartCmd = " + std::to_string(StartCmd_) +
           ", StartDate = " + database.SqlDate(StartDate_) +
           ", StopCmd = " + std::to_string(StopCmd_) +
           ", StopDate = " + database.SqlDate(StopDate_) + ", Opr = " + database.SqlText(Opr_) +
           ", OprID = " + std::to_string(OprID_) + ", Status = " + std::to_string(Status_) +
           " WHERE ID = " + std::to_string(ID_);
}

void objOvrSchedule::adjustForSaving() {
    try {
        AdjustTimes(true);
    } catch (const std::exception& error) {
        // Nobody else says so: the editor has closed when it would be asked.
        services_.database.announceFailure(error);
        throw;
    }
}

bool objOvrSchedule::Save() {
    try {
        adjustForSaving();
        services_.database.execute(IsAdd_ ? insertStatement() : updateStatement());
        IsAdd_ = false;
        return true;
    } catch (const std::exception& error) {
        services_.database.report(error, "objOvrSchedule/Save");
        return false;
    }
}

bool objOvrSchedule::Delete() {
    ignoringErrors([this] {
        services_.database.execute("Delete FROM OvrSchedule WHERE ID = " + std::to_string(ID_));
    });
    return false;
}

PublicClass objOvrSchedule::describe(OverrideServices services) {
    using Class = objOvrSchedule;
    using Int = std::int32_t;
    using Short = std::int16_t;
    using Text = const std::string&;
    return ClassBuilder<Class>("objOvrSchedule", "One scheduled override of a point or a group.")
        .getLet<Int, Int>("PointID", &Class::PointID, &Class::PointID, "The point or the group.")
        .getLet<Short, Short>("PointType", &Class::PointType, &Class::PointType,
                              "0 door or output, 1 input, 2 and above groups; set before Create.")
        .getLet<Int, Int>("StartCmd", &Class::StartCmd, &Class::StartCmd,
                          "1 open, 2 secure, 3 time zone, 4 arm, 5 bypass.")
        .getLet<DateTime, DateTime>("StartDate", &Class::StartDate, &Class::StartDate,
                                    "The start in the location's time; UTC after Save.")
        .getLet<Int, Int>("StopCmd", &Class::StopCmd, &Class::StopCmd, "As StartCmd.")
        .getLet<DateTime, DateTime>("StopDate", &Class::StopDate, &Class::StopDate,
                                    "The stop in the location's time; UTC after Save.")
        .getLet<std::string, Text>("Opr", &Class::Opr, &Class::Opr, "Who made or changed it.")
        .getLet<Int, Int>("OprID", &Class::OprID, &Class::OprID, "That operator's number.")
        .getLet<Int, Int>("Status", &Class::Status, &Class::Status,
                          "0 never validated, 1 scheduled; other values are kept.")
        .getLet<bool, bool>("IsAdd", &Class::IsAdd, &Class::IsAdd,
                            "Whether Save inserts a row or updates the one loaded.")
        .get<std::string>("ErrField", &Class::ErrField, "Always empty.")
        .get<Short>("LocTimeDiff", &Class::LocTimeDiff,
                    "Minutes that the location is ahead of UTC now.")
        .get<Short>("SysTimeDiff", &Class::SysTimeDiff,
                    "Minutes that the workstation is ahead of UTC now.")
        .method("Create", &Class::Create, {"ID"},
                "Loads the row with that key, or prepares a new schedule. Always false.")
        .method("Save", &Class::Save, {}, "Inserts or updates; whether that succeeded.")
        .method("Delete", &Class::Delete, {}, "Deletes the row. Always false.")
        .creates([services = std::move(services)](ObjectSignals& /*signals*/) {
            return std::make_unique<objOvrSchedule>(services);
        })
        .build();
}

} // namespace kintar
