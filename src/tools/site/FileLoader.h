// Filling a new file of the embedded engine.
#pragma once

#include "tools/site/SiteDatabase.h"
#include "tools/site/SiteLoader.h"

#include <vector>

namespace kintar::site {

class FileLoader final : public SiteLoader {
public:
    /// The file must not be there yet.
    explicit FileLoader(const std::string& file);

    void createTables() override;
    void add(std::size_t table, std::span<const SiteValue> row) override;
    void createIndexes(const std::function<void()>& checkpoint) override;
    void commit() override;

private:
    SiteDatabase database_;
    std::vector<std::string> indexes_;
    std::vector<SiteStatement> inserts_; ///< by table
};

} // namespace kintar::site
