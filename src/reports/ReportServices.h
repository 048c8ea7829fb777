// What the report windows need of the rest of the server.
#pragma once

#include "base/LocaleFormats.h"
#include "platform/Platform.h"
#include "platform/Printers.h"
#include "server/ReportDatabase.h"
#include "server/modGlobals.h"

namespace kintar {

/// References outlive every report window and object.
struct ReportServices {
    modGlobals& globals;
    platform::Application& application;
    platform::Files& files;
    const platform::Clock& clock;
    platform::Printers& printers;
    platform::EventLoop& loop;
    ReportDatabases& databases;
    LocaleFormats formats;
};

} // namespace kintar
