// The public class that names the site.
#pragma once

#include "server/ClassTable.h"
#include "server/modGlobals.h"

namespace kintar {

/// Deliberately asymmetric: it has no initialisation, counts once for each assignment of `SysPath`,
/// and always counts down once when it ends, also where `SysPath` was never set.
class objSysPath final : public PublicObject {
public:
    explicit objSysPath(modGlobals& globals) : globals_(globals) {}
    objSysPath(const objSysPath&) = delete;
    objSysPath& operator=(const objSysPath&) = delete;
    ~objSysPath() override;

    /// The system path: a site's folder. Used by the start-up that follows, if one does.
    void SysPath(const std::string& value);

    static PublicClass describe(modGlobals& globals);

private:
    modGlobals& globals_;
};

} // namespace kintar
