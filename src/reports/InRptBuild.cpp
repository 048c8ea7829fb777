#include "reports/InRptBuild.h"

#include "base/Number.h"
#include "base/RunTimeError.h"
#include "base/Unicode.h"
#include "server/IgnoringErrors.h"

#include <chrono>
#include <utility>

namespace kintar::reports {
namespace {

constexpr long long minutesLookedBack = 48LL * 60;
constexpr std::size_t holdersInAStep = 64;
constexpr std::size_t holdersReadAside = 256;
constexpr std::chrono::milliseconds longestWait{20};
constexpr std::size_t printerMapLimit = std::size_t{1} << 20U;

// By position, as the statement names them: these are read for every row of the list.
enum DetailColumn : std::uint8_t {
    detailLoc,
    detailLocName,
    detailDevName,
    detailFName,
    detailLName,
    detailCompName,
    detailLastDev,
    detailLastDate
};

std::optional<DateTime> dateOrNothing(const FieldValue& value) {
    std::optional<DateTime> date;
    // A damaged date costs its own cell, never the row.
    ignoringErrors([&] { date = value.asDateTime(); });
    return date;
}

InRptRow rowFrom(const Recordset& found) {
    InRptRow row;
    row.loc = found.field(detailLoc).leadingLong();
    row.locName = found.field(detailLocName).text();
    row.dev = found.field(detailLastDev).leadingLong();
    row.devName = found.field(detailDevName).text();
    row.name = found.field(detailLName).text() + ", " + found.field(detailFName).text();
    row.company = found.field(detailCompName).text();
    row.lastUsed = dateOrNothing(found.field(detailLastDate));
    return row;
}

} // namespace

InRptBuild::InRptBuild(InRptWorld world, std::int32_t loc, InRptState& state)
    : world_(std::move(world)), loc_(loc), state_(state),
      path_(platform::rulePath(world_.tempFolder, R"(\InRpt.Mdb)")) {}

bool InRptBuild::step() {
    if (!world_.alive()) {
        holders_.reset();
        database_.reset();
        error_ = "The server's shared state has ended.";
        phase_ = Phase::Failed;
    }
    switch (phase_) {
    case Phase::Make:
        if (guarded("objInRpt/MakeRptMdb", [this] { MakeRptMdb(); })) {
            phase_ = Phase::Locations;
        }
        break;
    case Phase::Locations:
    case Phase::Holders:
    case Phase::Totals:
        guarded("objInRpt/PopulateTable", [this] { PopulateTable(); });
        break;
    case Phase::Publish:
        if (guarded("objInRpt/Create", [this] { database_->publish(); })) {
            database_.reset();
            phase_ = Phase::Published;
        }
        break;
    case Phase::Published:
    case Phase::Failed:
        break;
    }
    return phase_ != Phase::Published && phase_ != Phase::Failed;
}

bool InRptBuild::guarded(std::string_view routine, const std::function<void()>& work) {
    try {
        work();
        return phase_ != Phase::Failed;
    } catch (const std::exception& error) {
        fail(error, routine);
        return false;
    }
}

void InRptBuild::fail(const std::exception& error, std::string_view routine) {
    error_ = error.what();
    phase_ = Phase::Failed;
    holders_.reset();
    database_.reset(); // what was built so far goes: a part of a list is worse than none
    world_.report(error, routine);
}

void InRptBuild::MakeRptMdb() {
    if (world_.tempFolder.empty()) {
        throw RunTimeError(76, "Path not found: there is no temporary folder");
    }
    for (const std::string& name : world_.files.names(world_.tempFolder)) {
        if (unicode::fold(name) == "inrpt.mdb") {
            world_.databases.remove(platform::rulePath(world_.tempFolder, "\\") + name);
        }
    }
    database_ = world_.databases.create(path_, inRptTables());
}

void InRptBuild::PopulateTable() {
    if (phase_ == Phase::Locations) {
        readLocations();
        phase_ = Phase::Holders;
    } else if (phase_ == Phase::Holders) {
        readSomeHolders();
        if (cards_.atEnd() && holders_->isIdle()) {
            holders_.reset();
            phase_ = Phase::Totals;
        }
    } else {
        writeTotals();
    }
}

void InRptBuild::readLocations() {
    const std::int32_t locGrp =
        world_.record.OpenRecordset(locGrpQuery(loc_), world_.data).field("LocGrp").leadingLong();
    Recordset locations = world_.record.OpenRecordset(groupLocationsQuery(locGrp), world_.data);
    for (; !locations.atEnd(); locations.MoveNext()) {
        choice_.locationList += choice_.locationList.empty() ? "" : ", ";
        choice_.locationList += locations.field("Loc").text();
    }
    ReadLocationPrinters();
    cards_ = world_.record.OpenRecordset(activeCardsQuery(locGrp), world_.data);
    // For a single group, connections of their own would take longer than they save. So they do
    // with the embedded engine, which reads few together: measured, they make a build slower.
    const bool pays = cards_.RecordCount() > holdersReadAside &&
                      world_.record.readTogether(world_.data) >= holdersReadAside;
    holders_ = std::make_unique<HolderReads>(world_.record, world_.data,
                                             pays ? world_.newReadSession : nullptr);
}

void InRptBuild::ReadLocationPrinters() {
    ignoringErrors([this] {
        const auto map = world_.files.read(
            platform::rulePath(world_.dataPath(), R"(\InRptByLoc.txt)"), printerMapLimit);
        if (map) {
            choice_.printer = state_.printer;
            applyPrinterMap(unicode::toValidUtf8(*map), loc_, choice_);
            state_.printer = choice_.printer;
        }
    });
}

void InRptBuild::readSomeHolders() {
    std::size_t holders = 0;
    do {
        beginGroups();
        if (holders_->isIdle() || !holders_->waitFor(longestWait)) {
            return;
        }
        const HolderDetails read = holders_->take();
        beginGroups(); // which are read while these are written
        for (const Recordset& detail : read.uses) {
            insertUse(detail);
        }
        if (read.error) {
            std::rethrow_exception(read.error);
        }
        cardsDone_ += read.cards;
        holders += read.holders;
    } while (holders < holdersInAStep);
}

void InRptBuild::beginGroups() {
    const std::size_t together =
        holders_->areAside() ? holdersReadAside : world_.record.readTogether(world_.data);
    while (!cards_.atEnd() && holders_->canBegin()) {
        holders_->begin(nextHolders(together));
    }
}

/// The next holders, at most so many.
HolderGroup InRptBuild::nextHolders(std::size_t most) {
    const std::size_t nameId = cards_.fieldIndex("NameID");
    HolderGroup group;
    for (; !cards_.atEnd(); cards_.MoveNext()) {
        const std::int32_t next = cards_.field(nameId).leadingLong();
        if (holder_ != next) {
            if (group.statements.size() == most) {
                break;
            }
            holder_ = next;
            // The limit is taken anew for each holder: a long build does not favour the last ones.
            const DateTime limit = world_.clock.now().plusMinutes(-minutesLookedBack);
            group.statements.push_back(
                cardUsesQuery(next, choice_.locationList, world_.record.SqlDate(limit)));
        }
        ++group.cards;
    }
    return group;
}

void InRptBuild::insertUse(const Recordset& detail) {
    if (detail.atEnd()) {
        return;
    }
    world_.record.ExecuteSQL(insertInRpt(rowFrom(detail), world_.record), database_->connection());
    state_.inCount = add32(state_.inCount, 1);
}

void InRptBuild::writeTotals() {
    Recordset rows = world_.record.OpenRecordset(totalsQuery(), database_->connection());
    std::optional<TotalsRow> pair;
    for (; !rows.atEnd(); rows.MoveNext()) {
        const TotalsRow next{rows.field("Loc").leadingLong(), rows.field("Dev").leadingLong(), 0,
                             0};
        if (!pair || pair->loc != next.loc || pair->dev != next.dev) {
            if (pair && !NewTotal(*pair)) {
                return;
            }
            pair = next;
        }
        pair->devTotal = add32(pair->devTotal, 1);
    }
    if (!pair || NewTotal(*pair)) {
        phase_ = Phase::Publish;
    }
}

bool InRptBuild::NewTotal(const TotalsRow& row) {
    return guarded("objInRpt/NewTotal", [&] {
        TotalsRow counted = row;
        counted.locGrpTotal = state_.inCount;
        world_.record.ExecuteSQL(insertTotals(counted), database_->connection());
    });
}

} // namespace kintar::reports
