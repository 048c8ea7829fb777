#include "server/objSysPath.h"

#include "server/IgnoringErrors.h"

namespace kintar {

objSysPath::~objSysPath() {
    ignoringErrors([this] { globals_.forms.unload(FormId::frmPrnRpt); });
    ignoringErrors([this] { globals_.removeInstance(); });
}

void objSysPath::SysPath(const std::string& value) {
    globals_.gSysPath = value;
    globals_.addInstance();
}

PublicClass objSysPath::describe(modGlobals& globals) {
    return ClassBuilder<objSysPath>("objSysPath", "Names the site that the server works on.")
        .let(
            "SysPath", &objSysPath::SysPath,
            "The system path, the folder of the site. Set before any other object it decides which "
            "site start-up opens; the default is the application's folder.")
        .creates([&globals](ObjectSignals&) { return std::make_unique<objSysPath>(globals); })
        .build();
}

} // namespace kintar
