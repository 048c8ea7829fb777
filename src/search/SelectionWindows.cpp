#include "search/SelectionWindows.h"

namespace kintar::search {

SelectionWindows::SelectionWindows(const SelectionSurroundings& services)
    : services_(services), selName_([this] {
          auto form = platform::FormWindow::make<frmSelName>(services_.globals, services_.clock,
                                                             services_.formats);
          form->onClose([this] { selName_.unload(); });
          return form;
      }),
      inOut_([this] {
          auto form = platform::FormWindow::make<frmInOut>(services_.globals, services_.settings,
                                                           services_.formats);
          form->onClose([this] { inOut_.unload(); });
          return form;
      }) {
    services_.globals.forms.place(FormId::frmSelName, selName_);
    services_.globals.forms.place(FormId::frmInOut, inOut_);
}

SelectionWindows::~SelectionWindows() {
    inOut_.unload();
    selName_.unload();
    services_.globals.forms.remove(FormId::frmInOut);
    services_.globals.forms.remove(FormId::frmSelName);
    platform::FormWindow::destroyUnloaded();
}

frmSelName& SelectionWindows::showCriteria(std::int32_t locGrp, CalledFrom& opener) {
    frmSelName& form = selName_.get();
    form.LocGrp(locGrp);
    form.setCalledFrom(&opener);
    form.Show();
    return form;
}

frmInOut& SelectionWindows::showBoard(std::int32_t locGrp, const std::string& sql, bool showUdfs) {
    frmInOut& form = inOut_.get();
    form.LocGrp(locGrp);
    form.setSQL(sql);
    form.LoadList(showUdfs);
    form.Show();
    return form;
}

} // namespace kintar::search
