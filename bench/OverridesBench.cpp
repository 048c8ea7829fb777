// Zone conversions beside a date library's, opening the editor on a busy point beside an idle one,
// and browsing beside bare SQLite.
#include "Beside.h"

#include "companion/SiteCompanion.h"
#include "overrides/Overrides.h"
#include "overrides/ZoneConversion.h"
#include "platform/PosixTemporaryFolders.h"
#include "platform/SystemClock.h"
#include "platform/SystemZones.h"
#include "platform/qt/QtWindowRequests.h"
#include "platform/qt/WindowApplication.h"

#include <QApplication>
#include <QPushButton>

#include <unicode/gregocal.h>
#include <unicode/timezone.h>

#include <sqlite3.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace kintar;

constexpr int rounds = 15;
constexpr int busyPoint = 9001;
constexpr int idlePoint = 9002;
constexpr int browsedPoint = 9003;
constexpr int busySchedules = 10000;
constexpr int browsedSchedules = 1000;

// ---- conversions

TimeZoneInformation chicago() {
    TimeZoneInformation zone;
    zone.Bias = 360;
    zone.DaylightBias = -60;
    zone.DaylightDate = {0, 3, 0, 2, 2, 0, 0, 0};
    zone.StandardDate = {0, 11, 0, 1, 2, 0, 0, 0};
    return zone;
}

/// Every hour of 2026, as fields.
std::vector<platform::SystemTime> hoursOfYear() {
    std::vector<platform::SystemTime> hours;
    const auto first = std::chrono::sys_days(std::chrono::year(2026) / 1 / 1);
    for (int hour = 0; hour < 365 * 24; ++hour) {
        const std::chrono::year_month_day date(first + std::chrono::days(hour / 24));
        hours.push_back({2026, static_cast<std::uint16_t>(static_cast<unsigned>(date.month())), 0,
                         static_cast<std::uint16_t>(static_cast<unsigned>(date.day())),
                         static_cast<std::uint16_t>(hour % 24), 0, 0, 0});
    }
    return hours;
}

/// What the date library's results come to, so that none is left out.
unsigned long sum = 0;

void byRule(const std::vector<platform::SystemTime>& hours, const TimeZoneInformation& zone) {
    for (const platform::SystemTime& hour : hours) {
        sum += SystemTimeToTzSpecificLocalTime(zone, hour)->hour;
        sum += TzSpecificLocalTimeToSystemTime(zone, hour)->hour;
    }
}

void byLibrary(const std::vector<platform::SystemTime>& hours, icu::GregorianCalendar& utc,
               icu::GregorianCalendar& local) {
    UErrorCode status = U_ZERO_ERROR;
    for (const platform::SystemTime& hour : hours) {
        for (const bool toLocal : {true, false}) {
            icu::GregorianCalendar& from = toLocal ? utc : local;
            icu::GregorianCalendar& to = toLocal ? local : utc;
            from.clear();
            from.set(hour.year, hour.month - 1, hour.day, hour.hour, hour.minute, hour.second);
            to.setTime(from.getTime(status), status);
            sum += static_cast<unsigned long>(to.get(UCAL_HOUR_OF_DAY, status));
        }
    }
    if (U_FAILURE(status)) {
        throw std::runtime_error("the date library failed");
    }
}

void benchConversions() {
    const std::vector<platform::SystemTime> hours = hoursOfYear();
    const TimeZoneInformation zone = chicago();
    UErrorCode status = U_ZERO_ERROR;
    icu::GregorianCalendar utc(icu::TimeZone::createTimeZone("UTC"), status);
    icu::GregorianCalendar local(icu::TimeZone::createTimeZone("America/Chicago"), status);
    bench::beside(
        "a conversion by rule / by the date library (17,520)", rounds, [&] { byRule(hours, zone); },
        [&] { byLibrary(hours, utc, local); }, 1.0);
}

// ---- the editor on a real site

class Site {
public:
    Site() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kintar-bench-XXXXXX").string();
        if (!mkdtemp(pattern.data())) {
            throw std::runtime_error("no temporary folder");
        }
        folder_ = pattern;
        setenv("TMPDIR", (folder_ + "/tmp").c_str(), 1);
        std::filesystem::create_directory(folder_ + "/tmp");
        std::filesystem::permissions(folder_ + "/tmp", std::filesystem::perms::owner_all);
        const std::string command = std::string(KINTAR_BIN "/kintar-site create ") + folder_ +
                                    "/site --names 20 >/dev/null";
        if (std::system(command.c_str()) != 0) {
            throw std::runtime_error("kintar-site create failed");
        }
        setenv("KINTAR3_APP_DIR", path().c_str(), 1);
        if (sqlite3_open((path() + "/site.db").c_str(), &database_) != SQLITE_OK) {
            throw std::runtime_error("the site's database cannot be opened");
        }
        fill();
    }
    Site(const Site&) = delete;
    Site& operator=(const Site&) = delete;
    ~Site() {
        sqlite3_close(database_);
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    [[nodiscard]] std::string path() const { return folder_ + "/site"; }
    [[nodiscard]] sqlite3* database() const { return database_; }

private:
    void run(const std::string& sql) {
        if (sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database_));
        }
    }
    void fill() {
        run("BEGIN");
        for (const int point : {busyPoint, idlePoint, browsedPoint}) {
            run("INSERT INTO IO (ID, Loc) VALUES (" + std::to_string(point) + ", 21)");
        }
        for (const auto& [point, count] :
             {std::pair(busyPoint, busySchedules), std::pair(browsedPoint, browsedSchedules)}) {
            for (int i = 0; i < count; ++i) {
                run("INSERT INTO OvrSchedule (PointID, PointType, StartCmd, StopCmd, StartDate, "
                    "StopDate, Opr, OprID, Status) VALUES (" +
                    std::to_string(point) + ", 0, 1, 2, datetime('2026-07-04 09:00:00', '+" +
                    std::to_string(i * 13) + " hours'), datetime('2026-07-04 10:00:00', '+" +
                    std::to_string(i * 13) + " hours'), 'Ann', 1, 1)");
            }
        }
        run("COMMIT");
    }

    std::string folder_;
    sqlite3* database_ = nullptr;
};

class NoNotices final : public companion::Notices {
public:
    void writeFailed(const std::string& reason) override { std::cerr << reason << "\n"; }
};

/// Notices the first paint of a window.
class PaintWatch final : public QObject {
public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        painted = painted || event->type() == QEvent::Paint;
        return false;
    }
    bool painted = false;
};

struct Workstation {
    explicit Workstation(const std::string& site) {
        globals.gSysPath = site;
        globals.addInstance();
        if (!globals.gCnn().isOpen()) {
            throw std::runtime_error("the site does not open");
        }
    }
    ~Workstation() { globals.removeInstance(); }
    Workstation(const Workstation&) = delete;
    Workstation& operator=(const Workstation&) = delete;

    void open(int point) {
        PaintWatch watch;
        frmOvrSchedule& form = overrides.ovrSchedule().get();
        form.SecureOpt(true);
        form.OpenOpt(true);
        form.TZOpt(true);
        form.PointID(point);
        form.installEventFilter(&watch);
        form.showEditor();
        while (!watch.painted) {
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
        form.removeEventFilter(&watch);
    }
    void openAndClose(int point) {
        open(point);
        overrides.ovrSchedule().unload();
    }
    /// Shows every schedule of the open editor and the new one behind the last: forwards, and from
    /// there backwards the next time.
    void browse() {
        const char* name = std::exchange(atEnd_, !atEnd_) ? "cmdPrevious" : "cmdNext";
        frmOvrSchedule& form = overrides.ovrSchedule().get();
        auto* button = form.findChild<QPushButton*>(QLatin1String(name));
        for (int i = 0; i <= browsedSchedules; ++i) {
            Q_EMIT button->clicked(); // what a press does, without drawing the pressed button
            const bool stored = !form.windowTitle().startsWith(QLatin1String("Scheduled"));
            if (stored != (i < browsedSchedules)) {
                throw std::runtime_error("browsing does not show every schedule once");
            }
        }
    }

    companion::StandardErrorLog log;
    NoNotices notices;
    companion::SiteCompanion companion{log, notices};
    platform::WindowApplication application;
    platform::PosixTemporaryFolders temporaryFolders;
    modGlobals globals{companion, application, temporaryFolders};
    platform::SystemClock clock;
    platform::SystemZones zones{clock};
    platform::QtWindowRequests windows;
    Overrides overrides{{globals, application, clock, zones, windows, {}}};

private:
    bool atEnd_ = false;
};

void runBare(sqlite3* database, const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(database));
    }
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < sqlite3_column_count(statement); ++column) {
            sum += static_cast<unsigned long>(sqlite3_column_bytes(statement, column));
        }
    }
    sqlite3_finalize(statement);
}

/// The statements of browsing, each as text.
void browseBare(sqlite3* database) {
    for (int i = 0; i < browsedSchedules; ++i) {
        runBare(database,
                "SELECT * FROM OvrSchedule WHERE ID = " + std::to_string(busySchedules + 1 + i));
        runBare(database, "SELECT TimeZone, DST  FROM Loc Where Loc IN (Select Loc From IO Where "
                          "ID = " +
                              std::to_string(browsedPoint) + ")");
    }
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    try {
        benchConversions();
        const Site site;
        QApplication application(argc, argv);
        Workstation workstation(site.path());
        bench::beside(
            "the editor to first paint, 10,000 schedules / none", rounds,
            [&] { workstation.openAndClose(busyPoint); },
            [&] { workstation.openAndClose(idlePoint); }, 2.0);
        workstation.open(browsedPoint);
        bench::beside(
            "Next through 1,000 schedules / bare SQLite", 5, [&] { workstation.browse(); },
            [&] { browseBare(site.database()); }, 3.0);
        workstation.overrides.ovrSchedule().unload();
    } catch (const std::exception& error) {
        std::cerr << "overrides_bench: " << error.what() << "\n";
        return 1;
    }
    return sum == 0 ? 1 : 0;
}
