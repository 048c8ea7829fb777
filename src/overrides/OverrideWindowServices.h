// What the override window needs of the rest of the server.
#pragma once

#include "overrides/OverrideDone.h"
#include "overrides/OverrideServices.h"
#include "overrides/OverrideTexts.h"
#include "platform/WindowRequests.h"
#include "server/modGlobals.h"

namespace kintar {

/// References outlive the window.
struct OverrideWindowServices {
    modGlobals& globals;
    platform::WindowRequests& windows;
    OverrideServices record;
    OverrideTexts texts;
    OverrideDone& done;
};

} // namespace kintar
