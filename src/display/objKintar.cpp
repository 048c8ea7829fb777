#include "display/objKintar.h"

#include "display/DisplayWindows.h"
#include "server/IgnoringErrors.h"

namespace kintar {

objKintar::objKintar(DisplayWindows& display) : display_(display) {
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

PublicClass objKintar::describe(DisplayWindows& display) {
    return ClassBuilder<objKintar>(
               "objKintar", "Shows the photo, the name and the event of a card that was used.")
        .let("ID", &objKintar::ID, "The person's number; setting it shows all values.")
        .let("LocGrp", &objKintar::LocGrp, "The location group.")
        .let("LocName", &objKintar::LocName, "The location's name.")
        .let("FName", &objKintar::FName, "The person's first name.")
        .let("LName", &objKintar::LName, "The person's last name.")
        .let("Device", &objKintar::Device, "The name of the device (reader).")
        .let("EventDesc", &objKintar::EventDesc, "What happened.")
        .let("DateTime", &objKintar::DateTime,
             "When it happened, as `2012-03-14T17:05:00` or as the server's locale writes dates "
             "and times; "
             "its time of day is kept and shown. Any other text raises error 13.")
        .let("Code", &objKintar::Code, "The card code.")
        .let("OprID", &objKintar::OprID, "The operator who may enable and disable the card.")
        .creates([&display](ObjectSignals&) { return std::make_unique<objKintar>(display); })
        .build();
}

} // namespace kintar
