#include "companion/SiteFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kintar::companion {

std::string testFile(const std::string& name) {
    std::ifstream file(std::string(KINTAR_COMPANION_TESTS) + "/" + name, std::ios::binary);
    if (!file) {
        throw std::runtime_error("no test file " + name);
    }
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

SiteFolder::SiteFolder(testing::PrivateCluster& cluster) {
    makeFolder();
    database_ = std::make_unique<testing::TestDatabase>(cluster, testFile("data.sql"));
    writeSettings(database());
}

SiteFolder::SiteFolder(TestEngine engine) {
    makeFolder();
    database_ =
        std::make_unique<testing::TestDatabase>(engine, path_ + "/site.db", testFile("data.sql"));
    writeSettings(engine == TestEngine::Sqlite ? "site.db" : database());
}

void SiteFolder::makeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kintar-site-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    path_ = pattern;
    std::filesystem::create_directory(path_ + "/Data");
}

void SiteFolder::writeSettings(const std::string& database) const {
    write("kintar3.ini", "[Site]\nDatabase=" + database + "\nData=Data\nTexts=Texts\n");
}

SiteFolder::~SiteFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void SiteFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(path_ + "/" + name, std::ios::binary) << content;
}

} // namespace kintar::companion
