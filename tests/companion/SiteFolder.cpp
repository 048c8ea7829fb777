#include "companion/SiteFolder.h"

#include "companion/SiteSchema.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sqlite3.h>
#include <sstream>
#include <stdexcept>

namespace kintar::companion {

namespace {

void run(sqlite3* database, const std::string& sql) {
    char* message = nullptr;
    if (sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        const std::string text = message != nullptr ? message : "unknown";
        sqlite3_free(message);
        throw std::runtime_error(text);
    }
}

} // namespace

std::string testFile(const std::string& name) {
    std::ifstream file(std::string(KINTAR_COMPANION_TESTS) + "/" + name, std::ios::binary);
    if (!file) {
        throw std::runtime_error("no test file " + name);
    }
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

SiteFolder::SiteFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kintar-site-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    path_ = pattern;
    std::filesystem::create_directory(path_ + "/Data");
    write("kintar3.ini", "[Site]\nDatabase=site.db\nData=Data\nTexts=Texts\n");
    std::string statements = "BEGIN;";
    for (const std::string& statement : siteSchemaStatements()) {
        statements += statement + ";";
    }
    foreign(statements + testFile("data.sql") + "COMMIT;");
}

SiteFolder::~SiteFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void SiteFolder::foreign(const std::string& sql) const {
    sqlite3* opened = nullptr;
    sqlite3_open(database().c_str(), &opened);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle(opened, sqlite3_close);
    sqlite3_exec(opened, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
    run(opened, sql);
}

void SiteFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(path_ + "/" + name, std::ios::binary) << content;
}

} // namespace kintar::companion
