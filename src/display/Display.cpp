#include "display/Display.h"

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
    platform::FormWindow::destroyUnloaded();
}

} // namespace kintar
