// The pieces of the server, put together.
#pragma once

#include "companion/Log.h"
#include "companion/SiteCompanion.h"
#include "companion/SqliteReportDatabases.h"
#include "display/AlarmWindows.h"
#include "display/DisplayWindows.h"
#include "host/composition/OperatorNotices.h"
#include "overrides/Overrides.h"
#include "platform/PosixFiles.h"
#include "platform/PosixTemporaryFolders.h"
#include "platform/SystemClock.h"
#include "platform/SystemZones.h"
#include "platform/qt/CupsPrinters.h"
#include "platform/qt/DesktopBrowser.h"
#include "platform/qt/FileSettings.h"
#include "platform/qt/FormWindow.h"
#include "platform/qt/PhotoLoader.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtWindowRequests.h"
#include "platform/qt/WindowApplication.h"
#include "reports/ReportWindows.h"
#include "search/NameSearchWindows.h"
#include "search/SelectionWindows.h"
#include "server/ClassTable.h"
#include "server/modGlobals.h"

#include <string>
#include <vector>

namespace kintar::host {

/// Every piece behind the public classes. Making it opens no window and no site. It outlives the
/// class table that it gives and every object made from that.
class Composition {
public:
    /// `photos` outlives this.
    explicit Composition(platform::PhotoLoader& photos);
    Composition(const Composition&) = delete;
    Composition& operator=(const Composition&) = delete;

    /// The public classes that clients may create, in their order.
    ClassTable classes();

    /// The seven forms as they are made, in the order of their places; none is loaded by that.
    std::vector<platform::FormWindow*> forms();

    platform::WindowApplication& application() { return application_; }
    companion::Log& log() { return log_; }

private:
    LocaleFormats formats_;
    companion::StandardErrorLog log_;
    OperatorNotices notices_;
    companion::SiteCompanion companion_;
    platform::WindowApplication application_;
    platform::PosixTemporaryFolders temporaryFolders_;
    platform::FileSettings settings_;
    platform::PosixFiles files_;
    platform::SystemClock clock_;
    platform::QtWindowRequests windows_;
    platform::CupsPrinters printers_;
    platform::QtEventLoop loop_;
    companion::SqliteReportDatabases reportDatabases_;
    modGlobals globals_;
    platform::DesktopBrowser browser_;
    platform::SystemZones zones_;
    DisplayWindows display_;
    AlarmWindows alarm_;
    ReportWindows reports_;
    search::SelectionWindows selection_;
    search::NameSearchWindows nameSearch_;
    Overrides overrides_;
};

/// "4.4.12".
std::string versionText(const platform::Application::Version& version);

} // namespace kintar::host
