#include "overrides/objOverride.h"

#include "server/IgnoringErrors.h"

#include <memory>

namespace kintar {

objOverride::objOverride(modGlobals& globals, FormOf form, OverrideDone& done,
                         ObjectSignals& signals)
    : globals_(globals), form_(std::move(form)), done_(done), signals_(signals) {
    globals_.addInstance();
    done_.add(signals_);
}

objOverride::~objOverride() {
    ignoringErrors([this] { globals_.forms.unload(FormId::frmOvrSchedule); });
    done_.remove(signals_);
    ignoringErrors([this] { globals_.removeInstance(); });
}

void objOverride::PointID(std::int32_t value, Completion completion) {
    done_.set(false);
    ignoringErrors([&] {
        OverrideForm& form = form_();
        form.PointID(value);
        ignoringErrors([&] { form.showEditor(); });
        form.bringToFront([completion = std::move(completion)] { completion(std::nullopt); });
    });
}

void objOverride::PointType(std::int16_t value) {
    ignoringErrors([&] { form_().PointType(value); });
}

void objOverride::PointName(const std::string& value) {
    ignoringErrors([&] { form_().PointName(value); });
}

void objOverride::LocName(const std::string& value) {
    ignoringErrors([&] { form_().LocName(value); });
}

void objOverride::OprName(const std::string& value) {
    ignoringErrors([&] { form_().OprName(value); });
}

void objOverride::OprID(std::int32_t value) {
    ignoringErrors([&] { form_().OprID(std::to_string(value)); });
}

void objOverride::SecureOpt(bool value) {
    ignoringErrors([&] { form_().SecureOpt(value); });
}

void objOverride::OpenOpt(bool value) {
    ignoringErrors([&] { form_().OpenOpt(value); });
}

void objOverride::TZOpt(bool value) {
    ignoringErrors([&] { form_().TZOpt(value); });
}

void objOverride::ArmOpt(bool value) {
    ignoringErrors([&] { form_().ArmOpt(value); });
}

void objOverride::ByPassOpt(bool value) {
    ignoringErrors([&] { form_().ByPassOpt(value); });
}

PublicClass objOverride::describe(modGlobals& globals, const FormOf& form, OverrideDone& done) {
    return ClassBuilder<objOverride>("objOverride",
                                     "Opens the editor for scheduled overrides of a point.")
        .letLater("PointID", &objOverride::PointID,
                  "The point or the group; setting it opens the editor, so it comes last.")
        .let("PointType", &objOverride::PointType,
             "0 door or output, 1 input, 2 group of doors or outputs, 3 group of inputs.")
        .let("PointName", &objOverride::PointName, "The point's name.")
        .let("LocName", &objOverride::LocName, "The location's name.")
        .let("OprName", &objOverride::OprName, "The operator's name, recorded with a schedule.")
        .let("OprID", &objOverride::OprID, "The operator's number, recorded with a schedule.")
        .let("SecureOpt", &objOverride::SecureOpt, "Whether the point accepts Secure.")
        .let("OpenOpt", &objOverride::OpenOpt, "Whether the point accepts Open.")
        .let("TZOpt", &objOverride::TZOpt, "Whether the point accepts Time Zone.")
        .let("ArmOpt", &objOverride::ArmOpt, "Whether the point accepts Arm.")
        .let("ByPassOpt", &objOverride::ByPassOpt, "Whether the point accepts ByPass.")
        .get("Done", &objOverride::Done, "Whether the editor has closed since it was last opened.",
             true)
        .creates([&globals, form, &done](ObjectSignals& signals) {
            return std::make_unique<objOverride>(globals, form, done, signals);
        })
        .build();
}

} // namespace kintar
