// A site of a test's own, in a folder of its own that is gone when the test is over.
#pragma once

#include <string>

namespace kintar::companion {

/// Makes a site as `kintar-site create` would, with the data of `data.sql`.
class SiteFolder {
public:
    SiteFolder();
    SiteFolder(const SiteFolder&) = delete;
    SiteFolder& operator=(const SiteFolder&) = delete;
    ~SiteFolder();

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string database() const { return path_ + "/site.db"; }
    /// Runs statements of the engine's own language as a foreign program would: on a connection
    /// that knows nothing of ours.
    void foreign(const std::string& sql) const;
    void write(const std::string& name, const std::string& content) const;

private:
    std::string path_;
};

/// The whole text of a file beside the tests.
std::string testFile(const std::string& name);

} // namespace kintar::companion
