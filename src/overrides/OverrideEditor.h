// What the override editor does, without its window: the schedule shown, the browsing, the checks.
#pragma once

#include "overrides/OverrideAcceptance.h"
#include "overrides/OverrideCommands.h"
#include "overrides/OverridePoint.h"
#include "overrides/OverrideServices.h"
#include "overrides/OverrideTexts.h"
#include "overrides/OverrideTime.h"
#include "overrides/objOvrSchedule.h"
#include "server/Recordset.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kintar {

/// One side of a schedule as the window shows it.
struct OverrideSide {
    OverrideTime time;
    std::string readout; ///< the slider's time of day, as the locale writes it
    OverrideOptions options;
};

/// The editor between its load and its close. No routine throws; database errors are ignored.
///
/// Routines that show a schedule let window messages run, and so may find on return that `close`
/// was called; they then leave everything as it is.
class OverrideEditor {
public:
    OverrideEditor(OverrideServices services, OverrideTexts texts)
        : services_(std::move(services)), texts_(std::move(texts)) {}

    /// Set by the client at any time; used from then on where the rules look at it.
    OverridePoint point;

    /// Opens the cursor and shows a new schedule.
    void Load();
    void cmdNext();
    void cmdPrevious();
    /// Deletes the schedule shown, without asking: meant so. Then shows what `cmdNext` shows.
    void cmdDelete();
    /// Validates and saves the schedule and its additional days; false, and the error shows, where
    /// it is not valid. The window closes after true.
    bool cmdOK();
    /// Closes the error frame.
    void cmdErrOK() { errorShown_ = false; }
    /// Releases the schedule; nothing is saved.
    void close();

    // What the operator changes. A time is corrected where it may not stay.
    void setDate(OverrideSide& side, DateTime date);
    void setSlider(OverrideSide& side, int value);
    /// While the slider is being moved: its readout follows, nothing else.
    void moveSlider(OverrideSide& side, int value);

    /// The client has passed a point while the window is open: the schedule stays as it is shown,
    /// but what is told of its zone is looked up again.
    void pointPassed();

    // Additional days, which only a new schedule can have.
    [[nodiscard]] bool additionalDaysUsable() const { return schedule_ && schedule_->IsAdd(); }
    void cmdAdd2List(DateTime start, DateTime stop);
    void cmdDelList(const std::string& key);
    [[nodiscard]] const std::vector<AdditionalDay>& additionalDays() const { return days_; }

    OverrideSide start;
    OverrideSide stop;
    [[nodiscard]] const std::string& caption() const { return caption_; }
    [[nodiscard]] std::string tabCaption() const;
    [[nodiscard]] const std::string& operatorReadout() const { return operatorReadout_; }
    [[nodiscard]] const std::string& zoneLine() const { return zoneLine_; }
    /// Whether the times shown are not the workstation's own.
    [[nodiscard]] bool zoneDiffers() const { return zoneDiffers_; }
    /// What the operator should know beside the rest; empty most of the time.
    [[nodiscard]] const std::string& notice() const { return notice_; }
    [[nodiscard]] bool errorShown() const { return errorShown_; }
    [[nodiscard]] const std::string& errorText() const { return errorText_; }
    [[nodiscard]] const OverrideTexts& texts() const { return texts_; }
    [[nodiscard]] DateTime today() const { return services_.clock.now().dateOnly(); }

private:
    void openCursor();
    void ShowSchedule(std::int32_t ID);
    void showRow();
    void RecordToForm();
    void FormToRecord();
    [[nodiscard]] bool ValidateEntry();
    void ShowError() { errorShown_ = true; }
    /// Both the start's check and the stop's: they differ in nothing but their side.
    void CheckTime(OverrideSide& side);
    void showTime(OverrideSide& side, OverrideTime time);
    [[nodiscard]] std::string generalNow() const;
    [[nodiscard]] OverrideOffsets offsets() const;
    void showZone(const objOvrSchedule& schedule);
    [[nodiscard]] std::shared_ptr<objOvrSchedule> newSchedule() const;

    OverrideServices services_;
    OverrideTexts texts_;
    std::shared_ptr<objOvrSchedule> schedule_;
    Recordset cursor_;
    std::vector<AdditionalDay> days_;
    std::string caption_;
    std::string operatorReadout_;
    std::string zoneLine_;
    bool zoneDiffers_ = false;
    std::string notice_;
    std::string errorText_ = "Stop Date cannot be less than Start Date !!";
    bool errorShown_ = false;
};

} // namespace kintar
