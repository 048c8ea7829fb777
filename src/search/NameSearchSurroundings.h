// What the name search stands on, put together by the program.
#pragma once

#include "base/LocaleFormats.h"
#include "platform/Platform.h"
#include "platform/WebBrowser.h"
#include "platform/WindowRequests.h"
#include "platform/qt/PhotoLoader.h"
#include "search/CalledFrom.h"
#include "server/modGlobals.h"

#include <cstdint>
#include <functional>
#include <string>

class QWidget;

namespace kintar::search {

/// The other windows that the name search opens. An empty one is not part of this program; the
/// dialog then says so in its status line.
struct NameSearchNeighbours {
    /// Sets the criteria window's group and opener and shows it modeless; the dialog brings the
    /// window forward.
    std::function<QWidget&(std::int32_t locGrp, CalledFrom& opener)> showCriteria;
    /// Sets the board's group and statement, loads its list and shows it modeless.
    std::function<void(std::int32_t locGrp, const std::string& sql, bool showUdfs)> showBoard;
    /// Prints a request: 1 the card status report, 2 who is in at a location. Calls `progress` with
    /// a line for the operator now and then, and `ended`, once, with why nothing was printed, or an
    /// empty text.
    std::function<void(std::int16_t request, std::int32_t loc,
                       std::function<void(const std::string& text)> progress,
                       std::function<void(const std::string& error)> ended)>
        print;
};

/// All of them outlive the windows and facades of the name search.
struct NameSearchSurroundings {
    modGlobals& globals;
    platform::Application& application;
    platform::SettingsStore& settings;
    platform::WindowRequests& windows;
    platform::PhotoLoader& photos;
    platform::WebBrowser& browser;
    LocaleFormats formats;
    NameSearchNeighbours neighbours;
};

} // namespace kintar::search
