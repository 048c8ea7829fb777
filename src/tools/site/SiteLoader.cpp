#include "tools/site/SiteLoader.h"

#include "companion/postgres/ConnectionText.h"
#include "tools/site/FileLoader.h"
#include "tools/site/ServerLoader.h"
#include "tools/site/SiteError.h"

#include <algorithm>

namespace kintar::site {

std::unique_ptr<SiteLoader> newLoader(const std::string& database) {
    if (companion::postgres::isConnectionText(database)) {
        return std::make_unique<ServerLoader>(database);
    }
    return std::make_unique<FileLoader>(database);
}

std::size_t tableIndex(std::string_view name) {
    const auto& tables = companion::siteTables();
    const auto found = std::ranges::find(tables, name, &companion::TableDefinition::name);
    if (found == tables.end()) {
        throw SiteError("a site has no table " + std::string(name));
    }
    return static_cast<std::size_t>(found - tables.begin());
}

} // namespace kintar::site
