#include "display/objAlarmPopUp.h"

#include "server/IgnoringErrors.h"
#include "server/TextNumbers.h"

namespace kintar {
namespace {} // namespace

objAlarmPopUp::objAlarmPopUp(modGlobals& globals, FormOf form)
    : globals_(globals), form_(std::move(form)) {
    globals_.addInstance();
    if (globals_.gSys) {
        ignoringErrors([this] { mTitle_ = globals_.gSys->GetText(textNumber::alarm); });
    }
}

objAlarmPopUp::~objAlarmPopUp() {
    ignoringErrors([this] { globals_.forms.unload(FormId::frmAlarmPopUp); });
    ignoringErrors([this] { globals_.removeInstance(); });
}

void objAlarmPopUp::EventString(const std::string& text) {
    // Every step goes on after the one before, also where that failed: an alarm is to be seen.
    ignoringErrors([&] { form_().WsHandle(wsHandle_); });
    ignoringErrors([&] { form_().setAlarm(text); });
    ignoringErrors([&] { form_().show(); });
    ignoringErrors([&] { form_().setForeColor(foreColor_); });
    ignoringErrors([&] { form_().setCaption(mTitle_ + "  " + locName_); }); // two blanks, always
    ignoringErrors([&] { form_().makeTopmost(); });
}

bool objAlarmPopUp::Enabled() const {
    bool ticked = false;
    ignoringErrors([&] { ticked = form_().disableTicked(); });
    return !ticked;
}

PublicClass objAlarmPopUp::describe(modGlobals& globals, const FormOf& form) {
    return ClassBuilder<objAlarmPopUp>("objAlarmPopUp", "Announces an alarm above all windows.")
        .let("EventString", &objAlarmPopUp::EventString,
             "The alarm's text. Setting it shows the window; a later text replaces it there.")
        .let("ForeColor", &objAlarmPopUp::ForeColor,
             "The text's colour, 0x00BBGGRR; a negative value is a system colour by its index. The "
             "background is chosen so that it can be read.")
        .let("WsHandle", &objAlarmPopUp::WsHandle,
             "The workstation's main window, which the operator can switch to.")
        .let("LocName", &objAlarmPopUp::LocName, "The location's name, shown in the title.")
        .get("Enabled", &objAlarmPopUp::Enabled,
             "False once the operator has ticked the box that switches the window off, until the "
             "window is unloaded.")
        .creates([&globals, form](ObjectSignals&) {
            return std::make_unique<objAlarmPopUp>(globals, form);
        })
        .build();
}

} // namespace kintar
