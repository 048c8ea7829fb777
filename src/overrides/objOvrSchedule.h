// The public class for one scheduled override: a row of `OvrSchedule` in memory.
#pragma once

#include "overrides/OverrideServices.h"
#include "overrides/ZoneConversion.h"
#include "server/ClassTable.h"

#include <cstdint>
#include <string>

namespace kintar {

/// Where a schedule's location keeps its time, as the last `Create` or `Save` found it.
struct OverrideZone {
    enum class Kind : std::uint8_t {
        NoLocation, ///< the point has no location: dates are not converted
        Utc,        ///< the location names no zone, or one that is unknown
        Zone,
    };
    Kind kind = Kind::NoLocation;
    std::string name; ///< as the location names it
    bool observesDaylightTime = false;
};

/// Dates are local time of the point's location after `Create`, and UTC after `Save`, whether or
/// not it succeeded: who goes on using the object calls `Create` again.
class objOvrSchedule final : public PublicObject {
public:
    explicit objOvrSchedule(OverrideServices services) : services_(std::move(services)) {}

    [[nodiscard]] std::int32_t PointID() const { return PointID_; }
    void PointID(std::int32_t value) { PointID_ = value; }
    /// 0 and 1 are single points, 2 and above groups. Set before `Create`.
    [[nodiscard]] std::int16_t PointType() const { return PointType_; }
    void PointType(std::int16_t value) { PointType_ = value; }
    [[nodiscard]] std::int32_t StartCmd() const { return StartCmd_; }
    void StartCmd(std::int32_t value) { StartCmd_ = value; }
    [[nodiscard]] DateTime StartDate() const { return StartDate_; }
    void StartDate(DateTime value) { StartDate_ = value; }
    [[nodiscard]] std::int32_t StopCmd() const { return StopCmd_; }
    void StopCmd(std::int32_t value) { StopCmd_ = value; }
    [[nodiscard]] DateTime StopDate() const { return StopDate_; }
    void StopDate(DateTime value) { StopDate_ = value; }
    [[nodiscard]] std::string Opr() const { return Opr_; }
    void Opr(const std::string& value) { Opr_ = value; }
    [[nodiscard]] std::int32_t OprID() const { return OprID_; }
    void OprID(std::int32_t value) { OprID_ = value; }
    /// 0 new and never validated, 1 scheduled; other values are kept.
    [[nodiscard]] std::int32_t Status() const { return Status_; }
    void Status(std::int32_t value) { Status_ = value; }
    /// Whether `Save` inserts a row; else it updates the one that `Create` was given.
    [[nodiscard]] bool IsAdd() const { return IsAdd_; }
    void IsAdd(bool value) { IsAdd_ = value; }
    /// Always empty: a place that is kept for its clients.
    [[nodiscard]] std::string ErrField() const { return {}; }
    /// Minutes that the location is ahead of UTC now.
    [[nodiscard]] std::int16_t LocTimeDiff() const { return LocTimeDiff_; }
    /// Minutes that the workstation is ahead of UTC now.
    [[nodiscard]] std::int16_t SysTimeDiff() const { return SysTimeDiff_; }

    /// Loads the row with that key, or prepares a new schedule where there is none. Never throws;
    /// an error leaves the object as far as it was filled. Always false: meant so.
    bool Create(std::int32_t ID);
    /// Inserts or updates; whether that succeeded. Never throws. A row that was inserted gives no
    /// key back, so a second `Save` would change nothing.
    bool Save();
    /// Deletes the row. Never throws. Always false: meant so.
    bool Delete();

    /// Not part of the public class: for the window that shows the times.
    [[nodiscard]] const OverrideZone& zone() const { return zone_; }

    static PublicClass describe(OverrideServices services);

private:
    void AdjustTimes(bool toUTC);
    void adjustForSaving();
    void setWorkstationOffset();
    void LoadRecord(const Recordset& row);
    void SetDefaults();
    [[nodiscard]] std::string insertStatement() const;
    [[nodiscard]] std::string updateStatement() const;

    OverrideServices services_;
    std::int32_t ID_ = 0;
    std::int32_t PointID_ = 0;
    std::int16_t PointType_ = 0;
    std::int32_t StartCmd_ = 0;
    DateTime StartDate_;
    std::int32_t StopCmd_ = 0;
    DateTime StopDate_;
    std::string Opr_;
    std::int32_t OprID_ = 0;
    std::int32_t Status_ = 0;
    bool IsAdd_ = false;
    std::int16_t LocTimeDiff_ = 0;
    std::int16_t SysTimeDiff_ = 0;
    OverrideZone zone_;
};

} // namespace kintar
