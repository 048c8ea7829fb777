#include "search/SearchSite.h"

namespace kintar::search::testing {

SearchSite::SearchSite() {
    database_.emplace(kintar::testing::chosenEngine(), folder_ / "site.db");
    startUp(database_->name());
}

SearchSite::SearchSite(const std::string& database) {
    startUp(database);
}

void SearchSite::startUp(const std::string& database) {
    folder_.makeFolder("Data");
    folder_.write("kintar3.ini", "[Site]\nDatabase=" + database + "\nData=Data\nTexts=Texts\n");
    globals_.gSysPath = folder_.path();
    globals_.addInstance();
}

SearchSite::~SearchSite() {
    globals_.removeInstance();
}

} // namespace kintar::search::testing
