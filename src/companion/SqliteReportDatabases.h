// Report databases as files of the embedded engine.
#pragma once

#include "server/ReportDatabase.h"

namespace kintar::companion {

/// Builds under a name of its own in the folder of the position, readable for the user alone.
class SqliteReportDatabases final : public ReportDatabases {
public:
    void remove(const std::string& path) override;
    std::unique_ptr<ReportDatabase> create(const std::string& path,
                                           const std::vector<ReportTable>& tables) override;
    std::shared_ptr<Connection> openReadOnly(const std::string& path) override;
};

} // namespace kintar::companion
