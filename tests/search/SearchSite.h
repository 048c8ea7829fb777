// A server on a site of a test's own, for tests that read a real database.
#pragma once

#include "companion/Log.h"
#include "companion/Notices.h"
#include "companion/SiteCompanion.h"
#include "server/modGlobals.h"
#include "support/FakeServer.h"
#include "support/ScratchFolder.h"
#include "support/TestDatabase.h"

#include <optional>
#include <string>
#include <vector>

namespace kintar::search::testing {

class RecordingLog final : public companion::Log {
public:
    void write(companion::LogLevel /*level*/, const std::string& line) override {
        lines.push_back(line);
    }
    std::vector<std::string> lines;
};

class NoNotices final : public companion::Notices {
public:
    void writeFailed(const std::string& /*reason*/) override {}
};

/// An empty site, and the connection of another program that writes to it.
class SearchSite {
public:
    SearchSite();
    /// On a database server's site, which is there already; `foreign` and `database` mean nothing.
    explicit SearchSite(const std::string& database);
    SearchSite(const SearchSite&) = delete;
    SearchSite& operator=(const SearchSite&) = delete;
    ~SearchSite();

    /// Runs statements of the engine's own language, as another program does.
    void foreign(const std::string& sql) { database_->run(sql); }
    void settle() { database_->settle(); }

    /// What the site's settings call it.
    [[nodiscard]] const std::string& database() const { return database_->name(); }

    /// The shared state, started up on this site.
    modGlobals& globals() { return globals_; }

    RecordingLog log;

private:
    void startUp(const std::string& database);

    kintar::testing::ScratchFolder folder_;
    std::optional<kintar::testing::TestDatabase> database_;
    NoNotices notices_;
    companion::SiteCompanion companion_{log, notices_};
    kintar::testing::Events events_;
    kintar::testing::FakeApplication application_{events_};
    kintar::testing::FakeTemporaryFolders temporaryFolders_{events_};
    modGlobals globals_{companion_, application_, temporaryFolders_};
};

} // namespace kintar::search::testing
