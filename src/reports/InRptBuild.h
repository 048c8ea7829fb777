// One build of the who-is-in report database, in steps.
#pragma once

#include "platform/Platform.h"
#include "reports/HolderReads.h"
#include "reports/InRptStatements.h"
#include "reports/PrinterMap.h"
#include "server/Companion.h"
#include "server/ReportDatabase.h"

#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::reports {

/// What a build stands on. Everything referred to outlives the build.
struct InRptWorld {
    TarnRec& record;
    Connection& data;
    ReportDatabases& databases;
    platform::Files& files;
    const platform::Clock& clock;
    std::string tempFolder; ///< empty: nothing may be written anywhere
    std::function<std::string()> dataPath;
    std::function<void(const std::exception&, std::string_view routine)> report;
    /// Whether what the build reads from is still the server's; false ends the build.
    std::function<bool()> alive;
    /// Gives connections to the same data for reading aside; may be empty, throw, or give nothing.
    std::function<std::unique_ptr<ReadSession>()> newReadSession = nullptr;
};

/// What outlives a build in its object, and what a build leaves there.
struct InRptState {
    std::int32_t inCount = 0; ///< goes on over all builds
    std::string printer;
};

/// A build is made, stepped until `step` says that it is over, and asked for its outcome. Nothing
/// of it throws: each routine reports its own errors. The database stands in its position only
/// after a build without any.
class InRptBuild {
public:
    InRptBuild(InRptWorld world, std::int32_t loc, InRptState& state);

    /// Works, or waits for what is read aside, for some milliseconds; whether there is more to do.
    bool step();
    [[nodiscard]] bool succeeded() const { return phase_ == Phase::Published; }
    /// What the error was; empty while there is none.
    [[nodiscard]] const std::string& error() const { return error_; }
    /// Cards looked at, and cards there are to look at.
    [[nodiscard]] std::size_t cardsDone() const { return cardsDone_; }
    [[nodiscard]] std::size_t cardsInAll() const { return cards_.RecordCount(); }
    /// What stands inside "Loc In (" and ")".
    [[nodiscard]] const std::string& locationList() const { return choice_.locationList; }

private:
    enum class Phase : std::uint8_t {
        Make,
        Locations,
        Holders,
        Totals,
        Publish,
        Published,
        Failed
    };

    bool guarded(std::string_view routine, const std::function<void()>& work);
    void fail(const std::exception& error, std::string_view routine);
    void MakeRptMdb();
    void PopulateTable();
    void ReadLocationPrinters();
    bool NewTotal(const TotalsRow& row);
    void readLocations();
    void readSomeHolders();
    void beginGroups();
    HolderGroup nextHolders(std::size_t most);
    void insertUse(const Recordset& detail);
    void writeTotals();

    InRptWorld world_;
    std::int32_t loc_;
    InRptState& state_;
    std::string path_;
    Phase phase_ = Phase::Make;
    std::string error_;
    std::unique_ptr<ReportDatabase> database_;
    PrinterChoice choice_;
    Recordset cards_;
    std::unique_ptr<HolderReads> holders_;
    std::size_t cardsDone_ = 0;
    std::optional<std::int32_t> holder_;
};

} // namespace kintar::reports
