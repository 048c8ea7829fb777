#include "overrides/Overrides.h"

#include "overrides/objOverride.h"
#include "overrides/objOvrSchedule.h"
#include "server/IgnoringErrors.h"

#include <utility>

namespace kintar {

Overrides::Overrides(Surroundings surroundings)
    : surroundings_(std::move(surroundings)), database_(surroundings_.globals),
      ovrSchedule_([this] {
          auto form = platform::FormWindow::make<frmOvrSchedule>(OverrideWindowServices{
              surroundings_.globals, surroundings_.windows, recordServices(), texts(), done_});
          form->onClose([this] { ovrSchedule_.unload(); });
          return form;
      }) {
    surroundings_.globals.forms.place(FormId::frmOvrSchedule, ovrSchedule_);
}

Overrides::~Overrides() {
    ovrSchedule_.unload();
    surroundings_.globals.forms.remove(FormId::frmOvrSchedule);
}

OverrideServices Overrides::recordServices() {
    return {database_, surroundings_.clock, surroundings_.zones,
            [this] { surroundings_.application.runPendingWindowMessages(); }};
}

OverrideTexts Overrides::texts() const {
    return {surroundings_.formats, [this](std::int16_t number) {
                std::string text;
                if (surroundings_.globals.gSys) {
                    ignoringErrors([&] { text = surroundings_.globals.gSys->GetText(number); });
                }
                return text;
            }};
}

PublicClass Overrides::describeOverride() {
    return objOverride::describe(
        surroundings_.globals, [this]() -> OverrideForm& { return ovrSchedule_.get(); }, done_);
}

PublicClass Overrides::describeOvrSchedule() {
    return objOvrSchedule::describe(recordServices());
}

} // namespace kintar
