// Holders' names and states as the database has them.
#pragma once

#include "base/LocaleFormats.h"
#include "search/Board.h"
#include "search/BoardRefresh.h"
#include "server/Companion.h"
#include "server/modGlobals.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kintar::board {

/// Adds one item for each row, which has at least `ID` and `Name`. Raises 457 at a second row with
/// the same ID, and 13 or 94 at an ID that is no number; the rows before it are there then. The
/// board's order is made in every case.
void fillBoard(Board& board, Recordset& names);

/// The most recent use of an active card of a name; nothing without an active card. Database errors
/// pass.
std::optional<LastUse> readLastUse(TarnRec& record, Connection& connection, std::int32_t nameId,
                                   const LocaleFormats& formats);

/// States for a refresh, on a connection of its own, which it opens at the first refresh: what a
/// click reads, and what other windows read and write, is kept apart from a long read. Where the
/// companion has no such connections it reads on the shared one, and not aside.
class CompanionStates final : public StateSource {
public:
    explicit CompanionStates(modGlobals& globals) : globals_(globals) {}
    CompanionStates(const CompanionStates&) = delete;
    CompanionStates& operator=(const CompanionStates&) = delete;
    ~CompanionStates() override = default;

    bool prepare() override;
    void begin() override;
    std::vector<Icon> read(std::span<const std::int32_t> nameIds) override;
    void end() noexcept override;

private:
    modGlobals& globals_; ///< touched in `prepare` only: that is on the windows' thread
    TarnRec* record_ = nullptr;
    Connection* connection_ = nullptr;
    std::unique_ptr<ReadSession> own_;
    std::vector<std::string> statements_; ///< those of one read
};

} // namespace kintar::board
