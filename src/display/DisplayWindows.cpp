#include "display/DisplayWindows.h"

#include <utility>

namespace kintar {

DisplayWindows::DisplayWindows(DisplayServices services)
    : services_(std::move(services)), kintar_([this] {
          auto form = platform::FormWindow::make<frmKintar>(services_);
          form->onClose([this] { kintar_.unload(); });
          return form;
      }) {
    services_.globals.forms.place(FormId::frmKintar, kintar_);
}

DisplayWindows::~DisplayWindows() {
    kintar_.unload();
    services_.globals.forms.remove(FormId::frmKintar);
    platform::FormWindow::destroyUnloaded();
}

} // namespace kintar
