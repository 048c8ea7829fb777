// The name search window on a site of a benchmark's own.
#pragma once

#include "companion/SiteCompanion.h"
#include "companion/SiteSchema.h"
#include "companion/sqlite/SqliteFunctions.h"
#include "companion/sqlite/SqliteHandle.h"
#include "platform/qt/PhotoWorkerPool.h"
#include "search/objNameSearch.h"
#include "support/EventLoop.h"
#include "support/FakeServer.h"
#include "support/FakeSettings.h"
#include "support/RecordingWindowRequests.h"

#include <QEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace kintar::bench {

/// A site with invented names of one group, made of syllables, so that beginnings are shared as
/// they are among real names.
class NameSite {
public:
    explicit NameSite(int names) {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "kintar-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        path_ = pattern;
        std::filesystem::create_directories(path_ + "/Data/Images");
        std::ofstream(path_ + "/kintar3.ini") << "[Site]\nDatabase=site.db\nData=Data\n";
        std::string sql = "PRAGMA synchronous=OFF;BEGIN;";
        for (const std::string& statement : companion::siteSchemaStatements()) {
            sql += statement + ";";
        }
        run(sql + namesStatement(names) +
            "INSERT INTO Company SELECT DISTINCT 1, Company, 'Company ' || Company FROM Names;"
            "INSERT INTO LocGrp VALUES (1); INSERT INTO ImageType VALUES (1, 1, -1);"
            "INSERT INTO FormData VALUES ('ListNAMESEARCH', 1, 'Name', 2400),"
            " ('ListNAMESEARCH', 2, 'Visitor', 700), ('ListNAMESEARCH', 3, 'Trace', 700),"
            " ('ListNAMESEARCH', 4, 'Company', 1500); COMMIT;");
    }
    NameSite(const NameSite&) = delete;
    NameSite& operator=(const NameSite&) = delete;
    ~NameSite() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string database() const { return path_ + "/site.db"; }

    void run(const std::string& sql) const {
        sqlite3* opened = nullptr;
        sqlite3_open(database().c_str(), &opened);
        const companion::sqlite::DatabaseHandle handle(opened);
        companion::sqlite::runPlain(opened, sql);
    }

private:
    static std::string namesStatement(int names) {
        const auto syllable = [](const std::string& number) {
            return "substr('"
                   "BaBeBiBoDaDeDoFaFeGaGoHaHeHoKaKeKoLaLeLiLoMaMeMiMoNaNeNoPaPeRaReRiRoSaSe"
                   "SiSoTaTeToVaVeWaWeZa', 1 + 2 * ((" +
                   number + ") % 46), 2)";
        };
        return "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
               std::to_string(names) + ") INSERT INTO Names SELECT i, " + syllable("i * 31 % 97") +
               " || lower(" + syllable("i * 7919") + ") || lower(" + syllable("i / 46") +
               ") || lower(" + syllable("i / 2116") + "), " + syllable("i * 104729") +
               " || lower(" + syllable("i / 7") +
               "), 1, i % 300, -(i % 20 = 0), -(i % 33 = 0) FROM n;";
    }

    std::string path_;
};

/// The dialog, open for picking on a site.
class NameDialog {
public:
    explicit NameDialog(const std::string& sitePath)
        : photos_(KINTAR_PHOTO_WORKER), companion_(log_, notices_) {
        globals_.gSysPath = sitePath;
        globals_.forms.place(FormId::frmNameSearch, place_);
        object_ = std::make_unique<search::objNameSearch>(surroundings_, place_, signals_);
        object_->NameSelMode(1);
        bool open = false;
        object_->LocGrp(1, [&](const std::optional<RunTimeError>& error) {
            if (error) {
                throw *error;
            }
            open = true;
        });
        runUntil([&] { return open; });
    }
    NameDialog(const NameDialog&) = delete;
    NameDialog& operator=(const NameDialog&) = delete;
    ~NameDialog() {
        object_.reset();
        testing::runPending();
    }

    search::frmNameSearch& form() { return place_.get(); }
    QTreeView& list() { return *form().findChild<QTreeView*>(QStringLiteral("lvList")); }
    platform::PhotoBox& photo() {
        return *form().findChild<platform::PhotoBox*>(QStringLiteral("Lead1"));
    }
    platform::PhotoWorkerPool& photos() { return photos_; }

    /// Searches and returns when the first rows have been painted; how many there are.
    int search(const char* lastName) {
        form().findChild<QLineEdit*>(QStringLiteral("Text_0"))->setText(QLatin1String(lastName));
        PaintCount paints(*list().viewport());
        form().findChild<QPushButton*>(QStringLiteral("cmdSearch"))->click();
        runUntil([&] { return !form().isFilling(); });
        const int before = paints.count;
        runUntil([&] { return paints.count > before; });
        return list().model()->rowCount();
    }

    static void runUntil(const std::function<bool()>& reached) {
        while (!reached()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    class PaintCount final : public QObject {
    public:
        explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
        bool eventFilter(QObject* /*watched*/, QEvent* event) override {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }
        int count = 0;
    };

private:
    class Silent final : public companion::Log, public companion::Notices {
    public:
        void write(companion::LogLevel /*level*/, const std::string& line) override {
            std::fprintf(stderr, "%s\n", line.c_str());
        }
        void writeFailed(const std::string& /*reason*/) override {}
    };
    class NoSignals final : public ObjectSignals {
    public:
        void changed(std::string_view /*member*/) override {}
    };
    class NoBrowser final : public platform::WebBrowser {
    public:
        bool open(const std::string& /*address*/) override { return false; }
    };

    testing::Events events_;
    Silent notices_;
    Silent& log_ = notices_;
    testing::FakeApplication application_{events_};
    testing::FakeTemporaryFolders temporaryFolders_{events_};
    testing::FakeSettings settings_;
    testing::RecordingWindowRequests windows_;
    NoBrowser browser_;
    NoSignals signals_;
    platform::PhotoWorkerPool photos_;
    companion::SiteCompanion companion_;
    modGlobals globals_{companion_, application_, temporaryFolders_};
    search::NameSearchSurroundings surroundings_{globals_, application_, settings_, windows_,
                                                 photos_,  browser_,     {},        {}};
    search::objNameSearch::Place place_{
        [this] { return platform::FormWindow::make<search::frmNameSearch>(surroundings_); }};
    std::unique_ptr<search::objNameSearch> object_;
};

/// A statement of the engine's own language, on a connection that knows the order of names.
class BareNames {
public:
    BareNames(const NameSite& site, const std::string& sql)
        : database_(companion::sqlite::openDatabase(site.database(),
                                                    companion::sqlite::Access::ReadOnly)) {
        companion::sqlite::registerFunctions(database_.get());
        statement_ = companion::sqlite::prepare(database_.get(), sql);
    }
    /// Steps through it; how many rows there are.
    int step() {
        int rows = 0;
        while (sqlite3_step(statement_.get()) == SQLITE_ROW) {
            ++rows;
        }
        sqlite3_reset(statement_.get());
        return rows;
    }

private:
    companion::sqlite::DatabaseHandle database_;
    companion::sqlite::StatementHandle statement_;
};

} // namespace kintar::bench
