// Makes a report of a site, without the server.
#pragma once

#include "companion/Log.h"
#include "companion/Notices.h"
#include "companion/SiteCompanion.h"
#include "companion/SqliteReportDatabases.h"
#include "platform/PosixFiles.h"
#include "platform/SystemClock.h"
#include "reports/InRptBuild.h"
#include "reports/engine/OpenReport.h"
#include "tools/report/Options.h"

#include <filesystem>
#include <memory>
#include <string>

namespace kintar::report {

/// A folder for this run alone (0700), gone with everything in it at the end.
class RunFolder {
public:
    RunFolder();
    RunFolder(const RunFolder&) = delete;
    RunFolder& operator=(const RunFolder&) = delete;
    ~RunFolder();
    [[nodiscard]] std::string path() const { return path_.string(); }

private:
    std::filesystem::path path_;
};

class ReportMaker {
public:
    /// Opens the site. Throws RunTimeError where that is none.
    explicit ReportMaker(const std::string& site);

    /// The report with its rows. Throws where it cannot be made; nothing of it is left then.
    std::shared_ptr<const reports::Report> make(const Options& options);
    /// The printer that the printer map names for the who-is-in report; empty where none.
    [[nodiscard]] const std::string& printer() const { return state_.printer; }
    [[nodiscard]] const RunFolder& folder() const { return folder_; }

private:
    class Silence final : public companion::Notices {
    public:
        void writeFailed(const std::string& /*reason*/) override {}
    };

    std::string makeWhoIsIn(std::int32_t loc);

    std::string site_;
    RunFolder folder_;
    companion::StandardErrorLog log_;
    Silence notices_;
    companion::SiteCompanion companion_{log_, notices_};
    companion::SqliteReportDatabases databases_;
    platform::PosixFiles files_;
    platform::SystemClock clock_;
    reports::InRptState state_;
    std::shared_ptr<TarnSys> system_;
};

} // namespace kintar::report
