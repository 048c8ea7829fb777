// The In / Out board on a database server: refreshing 10,000 holders.
#include "Beside.h"
#include "ServerSite.h"

#include "search/BoardRefresh.h"
#include "search/HolderReader.h"
#include "search/SearchSite.h"

#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

namespace {

using namespace kintar;

constexpr int holders = 10000;

/// A card and a quarter a holder, two uses a card.
std::string rows() {
    const std::string names = std::to_string(holders);
    const std::string cards = std::to_string(holders * 5 / 4);
    const auto uses = [&](const std::string& id, const std::string& loc, const std::string& flag) {
        return "INSERT INTO LocCards SELECT " + id + ", i, " + loc +
               ", timestamp '2012-01-01' + i % 70000 * interval '1 minute', i % 50, " + flag +
               ", 'N', 'N', 'N' FROM generate_series(1, " + cards + ") AS i;";
    };
    return "INSERT INTO Names SELECT i, 'Name' || i, 'Ann', 3, i % 20, 0, 0 FROM "
           "generate_series(1, " +
           names +
           ") AS i;"
           "INSERT INTO Cards SELECT i, 1 + i % " +
           names + ", 3, i, i, (i % 10 <> 0)::int FROM generate_series(1, " + cards + ") AS i;" +
           uses("2 * i + 1", "11", "CASE i % 3 WHEN 0 THEN 'I' ELSE 'O' END") +
           uses("2 * i", "12", "'O'");
}

/// The statement of the states as the server would be asked for it by hand.
constexpr const char* bareStates =
    "SELECT Status, Loc, LastDate, LastDev, coalesce(Inout1, '') || '  ' || coalesce(Inout2, '') "
    "|| '  ' || coalesce(Inout3, '') || '  ' || coalesce(Inout4, '') FROM Cards LEFT JOIN LocCards "
    "ON Cards.ID = LocCards.CardID WHERE NameID = $1 AND Status <> 0 ORDER BY LastDate DESC NULLS "
    "LAST";

void measure() {
    const bench::ServerSite server(rows());
    search::testing::SearchSite site(server.database());
    board::Board board;
    Recordset names = site.globals().tarnRec().OpenRecordset(
        "SELECT [Names].ID, [Names].LName as Name FROM [Names]", site.globals().gCnn());
    board::fillBoard(board, names);
    board::CompanionStates states(site.globals());
    bench::BareServerStatement bare(server.database(), bareStates);
    const auto refresh = [&] {
        board::BoardRefresh reading(board, states, [] {});
        while (!reading.waitFor(std::chrono::hours(1))) {
        }
        reading.show(board);
    };
    refresh();
    if (bare.runForEach(holders) == 0 || board.headCount().in == 0) {
        throw std::runtime_error("nobody is in");
    }
    bench::beside(
        "PostgreSQL: refreshing 10,000 holders / pipeline mode", 15, refresh,
        [&] {
            bare.plain("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
            bare.runForEach(holders);
            bare.plain("COMMIT");
        },
        1.3);
}

} // namespace

int main() {
    return kintar::bench::runBench("board_server_bench", measure);
}
