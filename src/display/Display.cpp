#include "display/Display.h"

#include "display/objImageType.h"
#include "display/objKintar.h"

#include <utility>

namespace kintar {

Display::Display(DisplayServices services)
    : services_(std::move(services)), kintar_([this] {
          auto form = platform::FormWindow::make<frmKintar>(services_);
          form->onClose([this] { kintar_.unload(); });
          return form;
      }) {
    services_.globals.forms.place(FormId::frmKintar, kintar_);
}

Display::~Display() {
    kintar_.unload();
    services_.globals.forms.remove(FormId::frmKintar);
}

void addObjKintar(ClassTable& table, Display& display) {
    table.add(
        ClassBuilder<objKintar>("objKintar",
                                "Shows the photo, the name and the event of a card that was used.")
            .let("ID", &objKintar::ID, "The person's number; setting it shows all values.")
            .let("LocGrp", &objKintar::LocGrp, "The location group.")
            .let("LocName", &objKintar::LocName, "The location's name.")
            .let("FName", &objKintar::FName, "The person's first name.")
            .let("LName", &objKintar::LName, "The person's last name.")
            .let("Device", &objKintar::Device, "The name of the device (reader).")
            .let("EventDesc", &objKintar::EventDesc, "What happened.")
            .let("DateTime", &objKintar::DateTime,
                 "When it happened; the time of day is kept and shown.")
            .let("Code", &objKintar::Code, "The card code.")
            .let("OprID", &objKintar::OprID, "The operator who may enable and disable the card.")
            .creates([&display](ObjectSignals&) { return std::make_unique<objKintar>(display); })
            .build());
}

void addObjImageType(ClassTable& table) {
    table.add(ClassBuilder<objImageType>("objImageType",
                                         "The image type of a location group; has no members.")
                  .creates([](ObjectSignals&) { return std::make_unique<objImageType>(); })
                  .build());
}

} // namespace kintar
