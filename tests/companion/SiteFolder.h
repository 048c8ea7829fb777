// A site of a test's own, in a folder of its own that is gone when the test is over.
#pragma once

#include "support/TestDatabase.h"

#include <memory>
#include <string>

namespace kintar::companion {

using kintar::testing::nameOf;
using kintar::testing::TestEngine;

/// Makes a site as `kintar-site create` would, with the data of `data.sql`.
class SiteFolder {
public:
    explicit SiteFolder(TestEngine engine = TestEngine::Sqlite);
    /// On a server of a test's own, which outlives this.
    explicit SiteFolder(testing::PrivateCluster& cluster);
    SiteFolder(const SiteFolder&) = delete;
    SiteFolder& operator=(const SiteFolder&) = delete;
    ~SiteFolder();

    [[nodiscard]] const std::string& path() const { return path_; }
    /// What the site's settings call its database: the path of a file, or a connection text.
    [[nodiscard]] const std::string& database() const { return database_->name(); }
    /// Runs statements of the engine's own language as a foreign program would: on a connection
    /// that knows nothing of ours and ends with them.
    void foreign(const std::string& sql) const { database_->runAlone(sql); }
    void dropDatabase() const { database_->drop(); }
    void write(const std::string& name, const std::string& content) const;

private:
    void makeFolder();
    void writeSettings(const std::string& database) const;

    std::string path_;
    std::unique_ptr<testing::TestDatabase> database_;
};

/// The whole text of a file beside the tests.
std::string testFile(const std::string& name);

} // namespace kintar::companion
