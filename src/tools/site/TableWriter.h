// Rows on their way into a table that is there already.
#pragma once

#include "companion/SiteSchema.h"
#include "tools/site/CopyText.h"
#include "tools/site/SiteDatabase.h"
#include "tools/site/TableReader.h"

#include <memory>

namespace kintar::site {

class TableWriter {
public:
    TableWriter(SiteDatabase& database, const companion::TableDefinition& table);

    void add(const RowTexts& row);
    /// Sends what is still on its way.
    void finish();

private:
    SiteDatabase& database_;
    const companion::TableDefinition& table_;
    std::unique_ptr<SiteStatement> insert_; ///< into a file
    CopyText waiting_;                      ///< for a server
};

} // namespace kintar::site
