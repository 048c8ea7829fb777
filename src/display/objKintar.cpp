#include "display/objKintar.h"

#include "display/Display.h"
#include "server/IgnoringErrors.h"

namespace kintar {

objKintar::objKintar(Display& display) : display_(display) {
    modGlobals& globals = display_.services().globals;
    globals.addInstance();
    globals.gPhotoReady = true;
    ignoringErrors([this] { display_.kintar().get().Show(); });
}

objKintar::~objKintar() {
    ignoringErrors([this] { display_.kintar().unload(); });
    display_.services().globals.removeInstance();
}

void objKintar::ID(std::int32_t value) {
    if (!display_.services().globals.gPhotoReady) {
        return;
    }
    display_.kintar().get().Kintar(value, locGrp_, fName_, lName_, dateTime_, eventDesc_, device_,
                                   locName_, code_, oprId_);
}

void objKintar::DateTime(const std::string& value) {
    const LocaleFormats& formats = display_.services().formats;
    dateTime_ = formats.formatLongTime(formats.parse(value));
}

} // namespace kintar
