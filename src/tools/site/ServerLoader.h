// Filling an empty database on a server.
#pragma once

#include "tools/site/CopyText.h"
#include "tools/site/SiteDatabase.h"
#include "tools/site/SiteLoader.h"

#include <vector>

namespace kintar::site {

/// Rows go to the server in large pieces, a table at a time, all of them in one transaction.
class ServerLoader final : public SiteLoader {
public:
    /// Throws where the database cannot be reached, is not empty, or is not in UTF-8.
    explicit ServerLoader(const std::string& connectionText);

    void createTables() override;
    void add(std::size_t table, std::span<const SiteValue> row) override;
    void createIndexes(const std::function<void()>& checkpoint) override;
    void commit() override;

private:
    void send(std::size_t table);

    SiteDatabase database_;
    std::vector<CopyText> waiting_; ///< by table
};

/// Throws where a database on a server cannot take a site: it holds something, or no UTF-8.
void requireEmpty(SiteDatabase& database);

} // namespace kintar::site
