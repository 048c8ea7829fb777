#include "display/AlarmWindows.h"

namespace kintar {

AlarmWindows::AlarmWindows(modGlobals& globals, platform::WindowRequests& requests,
                           platform::SettingsStore& settings)
    : globals_(globals), popUp_([this, &requests, &settings] {
          auto form = platform::FormWindow::make<frmAlarmPopUp>(globals_, requests, settings);
          form->onClose([this] { popUp_.unload(); });
          return form;
      }) {
    globals_.forms.place(FormId::frmAlarmPopUp, popUp_);
}

AlarmWindows::~AlarmWindows() {
    popUp_.unload();
    globals_.forms.remove(FormId::frmAlarmPopUp);
}

PublicClass AlarmWindows::publicClass() {
    return objAlarmPopUp::describe(globals_,
                                   [this]() -> display::AlarmForm& { return popUp_.get(); });
}

} // namespace kintar
