#include "overrides/OverrideEditor.h"

#include "server/IgnoringErrors.h"

#include <algorithm>

namespace kintar {
namespace {

bool hasArming(std::int16_t pointType) {
    return pointType == 1 || pointType == 3;
}

std::int32_t codeOf(OverrideCommand command) {
    return static_cast<std::int32_t>(command);
}

/// A selected button counts even where it has become unavailable: meant so for all but `opt1`.
std::int32_t startCode(const OverrideOptions& options) {
    const OverrideCommand selected = options.selected();
    const bool counts =
        selected != OverrideCommand::Secure || options.isAvailable(OverrideCommand::Secure);
    return counts ? codeOf(selected) : 0;
}

} // namespace

std::string OverrideEditor::tabCaption() const {
    return point.LocName + ":  " + point.PointName;
}

std::string OverrideEditor::generalNow() const {
    return texts_.formats().formatGeneralDate(services_.clock.now());
}

OverrideOffsets OverrideEditor::offsets() const {
    return {schedule_->LocTimeDiff(), schedule_->SysTimeDiff()};
}

void OverrideEditor::openCursor() {
    // Not by type: meant so.
    cursor_ = Recordset();
    ignoringErrors([this] {
        cursor_ = services_.database.open("Select ID From OvrSchedule Where PointID = " +
                                          std::to_string(point.PointID));
    });
    cursor_.MoveLast();
    cursor_.MoveFirst();
}

void OverrideEditor::Load() {
    openCursor();
    caption_ = texts_.newCaption();
    for (OverrideSide* side : {&start, &stop}) {
        side->options.makeAvailable(OverrideCommand::Secure, point.SecureOpt);
        side->options.makeAvailable(OverrideCommand::Open, point.OpenOpt);
        side->options.makeAvailable(OverrideCommand::TimeZone, point.TZOpt);
        side->options.makeAvailable(OverrideCommand::Arm, point.ArmOpt);
        side->options.makeAvailable(OverrideCommand::ByPass, point.ByPassOpt);
    }
    ShowSchedule(0);
}

void OverrideEditor::close() {
    schedule_.reset();
}

std::shared_ptr<objOvrSchedule> OverrideEditor::newSchedule() const {
    auto schedule = std::make_shared<objOvrSchedule>(services_);
    schedule->PointType(point.PointType);
    schedule->PointID(point.PointID);
    return schedule;
}

void OverrideEditor::ShowSchedule(std::int32_t ID) {
    const std::shared_ptr<objOvrSchedule> schedule = newSchedule();
    schedule_ = schedule;
    schedule->Create(ID);
    if (schedule_ != schedule) {
        return; // closed while messages ran
    }
    notice_ = ID != 0 && schedule->IsAdd()
                  ? "This schedule has been deleted meanwhile: OK saves a new one."
                  : "";
    days_.clear();
    showZone(*schedule);
    RecordToForm();
}

void OverrideEditor::showZone(const objOvrSchedule& schedule) {
    const OverrideOffsets offsets{schedule.LocTimeDiff(), schedule.SysTimeDiff()};
    zoneLine_ = OverrideTexts::zoneLine(schedule.zone(), offsets);
    zoneDiffers_ = OverrideTexts::aheadOfWorkstation(schedule.zone(), offsets) != 0;
}

void OverrideEditor::RecordToForm() {
    showTime(start, OverrideTime::of(schedule_->StartDate()));
    CheckTime(start);
    start.options.selectCode(schedule_->StartCmd());
    showTime(stop, OverrideTime::of(schedule_->StopDate()));
    CheckTime(stop);
    stop.options.selectCode(schedule_->StopCmd());
    operatorReadout_ = schedule_->IsAdd() ? point.OprName + "  " + generalNow() : schedule_->Opr();
    if (!hasArming(point.PointType)) {
        for (OverrideSide* side : {&start, &stop}) {
            side->options.makeAvailable(OverrideCommand::Arm, false);
            side->options.makeAvailable(OverrideCommand::ByPass, false);
        }
    }
}

void OverrideEditor::showTime(OverrideSide& side, OverrideTime time) {
    side.time = time;
    side.readout = texts_.readout(time.slider);
}

void OverrideEditor::CheckTime(OverrideSide& side) {
    if (!schedule_ || !schedule_->IsAdd()) {
        return; // an existing schedule is never adjusted
    }
    ignoringErrors(
        [&] { showTime(side, notInThePast(side.time, services_.clock.now(), offsets())); });
}

void OverrideEditor::setDate(OverrideSide& side, DateTime date) {
    side.time.date = date.dateOnly();
    CheckTime(side);
}

void OverrideEditor::moveSlider(OverrideSide& side, int value) {
    showTime(side, {side.time.date, std::clamp(value, 0, lastStep)});
}

void OverrideEditor::setSlider(OverrideSide& side, int value) {
    moveSlider(side, value);
    CheckTime(side);
}

void OverrideEditor::pointPassed() {
    const std::shared_ptr<objOvrSchedule> probe = newSchedule();
    probe->Create(0);
    showZone(*probe);
    notice_ = "OK saves what is shown for " + point.PointName + " at " + point.LocName + ".";
}

void OverrideEditor::FormToRecord() {
    schedule_->PointID(point.PointID);
    schedule_->StartDate(start.time.moment());
    schedule_->StopDate(stop.time.moment());
    schedule_->StartCmd(startCode(start.options));
    schedule_->StopCmd(codeOf(stop.options.selected()));
    schedule_->PointType(point.PointType);
    schedule_->OprID(point.OprID);
    // An existing schedule's text has no blank before the date: meant so.
    schedule_->Opr(schedule_->IsAdd() ? operatorReadout_ : point.OprName + generalNow());
}

bool OverrideEditor::ValidateEntry() {
    FormToRecord();
    const OverrideVerdict verdict = validateOverride(*schedule_);
    if (verdict == OverrideVerdict::Command) {
        // Never set back: a wrong date after a missing command shows this text again, meant so.
        errorText_ = texts_.missingCommand();
    }
    if (verdict != OverrideVerdict::Valid) {
        ShowError();
        return false;
    }
    return true;
}

bool OverrideEditor::cmdOK() {
    if (!schedule_ || !ValidateEntry()) {
        return false;
    }
    saveOverride(*schedule_, start.time.slider, stop.time.slider, days_);
    return true;
}

void OverrideEditor::cmdDelete() {
    if (!schedule_) {
        return;
    }
    schedule_->Delete();
    openCursor();
    cmdNext();
}

void OverrideEditor::showRow() {
    std::int32_t ID = 0;
    ignoringErrors([&] { ID = cursor_.field("ID").asLong(); });
    caption_ = texts_.positionCaption(cursor_.position() + 1, cursor_.RecordCount());
    ShowSchedule(ID);
}

// The cursor stands one row ahead of what is shown, in the direction of the last step.

void OverrideEditor::cmdNext() {
    if (cursor_.beforeStart()) {
        cursor_.MoveFirst();
    }
    if (cursor_.atEnd()) {
        caption_ = texts_.newCaption();
        ShowSchedule(0);
    } else {
        showRow();
        cursor_.MoveNext();
    }
}

void OverrideEditor::cmdPrevious() {
    if (cursor_.atEnd()) {
        cursor_.MoveLast();
    }
    if (cursor_.beforeStart()) {
        caption_ = texts_.newCaption();
        ShowSchedule(0);
    } else {
        showRow();
        cursor_.MovePrevious();
    }
}

void OverrideEditor::cmdAdd2List(DateTime start_, DateTime stop_) {
    const auto isTaken = [this](const std::string& key) {
        return std::ranges::find(days_, key, &AdditionalDay::key) != days_.end();
    };
    std::size_t number = days_.size() + 1;
    while (isTaken("ID" + std::to_string(number))) {
        ++number; // a row before has been removed
    }
    days_.push_back({"ID" + std::to_string(number), start_.dateOnly(), stop_.dateOnly()});
}

void OverrideEditor::cmdDelList(const std::string& key) {
    std::erase_if(days_, [&](const AdditionalDay& day) { return day.key == key; });
}

} // namespace kintar
