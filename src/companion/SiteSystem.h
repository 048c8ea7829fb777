// The system object of the reference companion.
#pragma once

#include "companion/Log.h"
#include "companion/Notices.h"
#include "companion/RecordHelper.h"
#include "companion/SiteSettings.h"
#include "companion/postgres/ServerWatch.h"
#include "server/Companion.h"

#include <memory>
#include <optional>

namespace kintar::companion {

/// A site: its two connections, its operator, its texts, rights and reports.
class SiteSystem final : public TarnSys {
public:
    /// All must outlive the system object.
    SiteSystem(RecordHelper& records, Log& log, Notices& notices)
        : records_(records), log_(log), notices_(notices) {}

    /// Throws RunTimeError 5 for an empty version.
    void SetVersion(const std::string& version) override;
    /// Empty before `Create`.
    std::string DataPath() override;
    /// The connection for reading and writing; throws DatabaseError (Closed) before `Create`.
    std::shared_ptr<Connection> DataConnection() override;
    /// A second connection to the same database, for reading only.
    std::shared_ptr<Connection> SetupConnection() override;
    std::unique_ptr<ReadSession> newReadSession() override;
    void SetOperator(std::int32_t oprId) override { operator_ = oprId; }
    bool Create(std::string& sysPath, bool& flag) override;
    /// Also empty, with a report, where the database cannot be read.
    std::string GetText(std::int16_t id) override;
    void ReportError(int number, const std::string& text, std::int16_t kind) override;
    /// Nobody is restricted in a group where no company is set for the operator. Company 0, people
    /// without one, is never hidden.
    std::string CompanyFilter(std::string_view column, std::int32_t locGrp, bool flag) override;
    /// A right is written `L3M2`: menu 2 for location group 3. The operator's profile grants all
    /// menus, or that one for location 0 or a location of the group. Anything else is no right.
    bool HasRight(std::string_view name) override;

private:
    std::optional<std::int32_t> profileOfOperator();
    bool profileGrants(std::int32_t profile, std::int32_t locGrp, std::int32_t menu);
    Recordset read(const std::string& sql);

    RecordHelper& records_;
    void watch(const SiteSettings& settings);

    Log& log_;
    Notices& notices_;
    std::string version_;
    std::string dataPath_;
    std::string database_;
    ServerLimits limits_;
    std::shared_ptr<Connection> data_;
    std::shared_ptr<Connection> setup_;
    std::int32_t operator_ = 0;
    std::unique_ptr<postgres::ServerWatch> watch_; ///< only where the database is on a server
};

} // namespace kintar::companion
