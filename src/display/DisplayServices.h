// What the display windows need of the rest of the server.
#pragma once

#include "base/LocaleFormats.h"
#include "platform/Platform.h"
#include "platform/WindowRequests.h"
#include "platform/qt/PhotoLoader.h"
#include "server/modGlobals.h"

namespace kintar {

/// References outlive every display window and object.
struct DisplayServices {
    modGlobals& globals;
    platform::Application& application;
    platform::SettingsStore& settings;
    platform::Files& files;
    const platform::Clock& clock;
    platform::WindowRequests& windows;
    platform::PhotoLoader& photos;
    LocaleFormats formats;
};

} // namespace kintar
