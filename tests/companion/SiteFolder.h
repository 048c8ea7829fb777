// A site of a test's own, in a folder of its own that is gone when the test is over.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace kintar::testing {
class PrivateCluster;
}

namespace kintar::companion {

/// The engines that the same tests run on.
enum class TestEngine : std::uint8_t { Sqlite, Postgres };
std::string nameOf(TestEngine engine);
inline void PrintTo(TestEngine engine, std::ostream* out) {
    *out << nameOf(engine);
}

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
    [[nodiscard]] const std::string& database() const { return database_; }
    /// Runs statements of the engine's own language as a foreign program would: on a connection
    /// that knows nothing of ours.
    void foreign(const std::string& sql) const;
    void dropDatabase() const;
    void write(const std::string& name, const std::string& content) const;

private:
    void makeFolder();

    testing::PrivateCluster* cluster_ = nullptr;
    TestEngine engine_;
    std::string path_;
    std::string database_;
};

/// Makes the database that sites on a server of a test's own are copies of.
void makeSiteTemplate(testing::PrivateCluster& cluster);

/// The whole text of a file beside the tests.
std::string testFile(const std::string& name);

} // namespace kintar::companion
