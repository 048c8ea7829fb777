// Filling an empty database with a site.
#pragma once

#include "companion/SiteSchema.h"
#include "tools/site/SiteValue.h"

#include <array>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace kintar::site {

/// Makes a site's tables and takes their rows, on whichever engine. Nothing of it is there for
/// anybody else before `commit`; without that, nothing stays. Every failure is a SiteError.
class SiteLoader {
public:
    SiteLoader() = default;
    SiteLoader(const SiteLoader&) = delete;
    SiteLoader& operator=(const SiteLoader&) = delete;
    virtual ~SiteLoader() = default;

    virtual void createTables() = 0;
    /// A row of the table at this place of `siteTables()`, every column in order.
    virtual void add(std::size_t table, std::span<const SiteValue> row) = 0;
    /// `checkpoint` is called between indexes.
    virtual void createIndexes(const std::function<void()>& checkpoint) = 0;
    virtual void commit() = 0;
};

/// For the file of a new embedded database, or for an empty database on a server.
std::unique_ptr<SiteLoader> newLoader(const std::string& database);

/// The place of a table in `siteTables()`.
std::size_t tableIndex(std::string_view name);

/// The rows of one table on their way.
class SiteRows {
public:
    SiteRows(SiteLoader& loader, std::string_view table)
        : loader_(loader), table_(tableIndex(table)) {}

    /// One row: every column's value in order.
    template <class... Values>
    void run(const Values&... values) {
        const std::array<SiteValue, sizeof...(Values)> row{siteValue(values)...};
        loader_.add(table_, row);
    }

private:
    SiteLoader& loader_;
    std::size_t table_;
};

} // namespace kintar::site
