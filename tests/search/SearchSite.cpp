#include "search/SearchSite.h"

#include "companion/SiteSchema.h"

#include <stdexcept>

namespace kintar::search::testing {

SearchSite::SearchSite(const std::string& database) {
    folder_.makeFolder("Data");
    folder_.write("kintar3.ini", "[Site]\nDatabase=" + database + "\nData=Data\nTexts=Texts\n");
    globals_.gSysPath = folder_.path();
    globals_.addInstance();
}

SearchSite::SearchSite() {
    folder_.makeFolder("Data");
    folder_.write("kintar3.ini", "[Site]\nDatabase=site.db\nData=Data\nTexts=Texts\n");
    if (sqlite3_open((folder_ / "site.db").c_str(), &foreign_) != SQLITE_OK) {
        throw std::runtime_error("cannot make a site's database");
    }
    sqlite3_busy_timeout(foreign_, 2000);
    foreign("PRAGMA synchronous=OFF"); // a test survives no power failure
    std::string schema = "BEGIN;";
    for (const std::string& statement : companion::siteSchemaStatements()) {
        schema += statement + ";";
    }
    foreign(schema + "COMMIT;");
    globals_.gSysPath = folder_.path();
    globals_.addInstance();
}

SearchSite::~SearchSite() {
    globals_.removeInstance();
    sqlite3_close(foreign_);
}

void SearchSite::foreign(const std::string& sql) {
    char* message = nullptr;
    if (sqlite3_exec(foreign_, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        const std::string text = message ? message : "unknown";
        sqlite3_free(message);
        throw std::runtime_error(text);
    }
}

} // namespace kintar::search::testing
