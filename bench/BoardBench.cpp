// The In / Out board: refreshing 10,000 holders, and how long its window does not react meanwhile.
#include "Beside.h"
#include "SearchData.h"

#include "search/frmInOut.h"
#include "support/FakeSettings.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <vector>

namespace kintar {
namespace {

constexpr int holders = 10000;
constexpr const char* allNames =
    "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name FROM [Names]";

/// The statement of the states as the engine would be asked for it by hand.
constexpr const char* bareStates =
    "SELECT Status, Loc, LastDate, LastDev, coalesce(Inout1, '') || '  ' || coalesce(Inout2, '') "
    "|| '  ' || coalesce(Inout3, '') || '  ' || coalesce(Inout4, '') FROM Cards LEFT JOIN LocCards "
    "ON Cards.ID = LocCards.CardID WHERE NameID = ?1 AND Status <> 0 ORDER BY LastDate DESC";

void measureRefresh(search::testing::SearchSite& site) {
    board::Board board;
    Recordset names = site.globals().tarnRec().OpenRecordset(allNames, site.globals().gCnn());
    board::fillBoard(board, names);
    board::CompanionStates states(site.globals());
    bench::BareStatement bare(site.database(), bareStates);
    bench::beside(
        "refreshing 10,000 holders", 15,
        [&] {
            board::BoardRefresh refresh(board, states, [] {});
            while (!refresh.waitFor(std::chrono::hours(1))) {
            }
            refresh.show(board);
        },
        [&] {
            bare.plain("BEGIN");
            for (int id = 1; id <= holders; ++id) {
                bare.bind(1, id);
                bare.run();
            }
            bare.plain("COMMIT");
        },
        1.5);
}

/// The longest time between two turns of the event loop while refreshes run.
void measureTurns(search::testing::SearchSite& site) {
    constexpr int refreshes = 20;
    constexpr double limit = 0.016;
    constexpr double allowed = 3;
    kintar::testing::FakeSettings settings;
    auto form =
        platform::FormWindow::make<search::frmInOut>(site.globals(), settings, LocaleFormats{});
    form->setSQL(allNames);
    form->LoadList(true);
    form->Show();
    QElapsedTimer sinceTurn;
    double longest = 0;
    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, &turns, [&] {
        longest = std::max(longest, static_cast<double>(sinceTurn.nsecsElapsed()) / 1e9);
        sinceTurn.start();
    });
    const auto untilShown = [&] {
        while (form->isRefreshing()) {
            QCoreApplication::processEvents();
        }
    };
    untilShown();
    turns.start(0);
    std::vector<double> longests;
    for (int i = 0; i < refreshes; ++i) {
        // Half of the holders change sides, so that the whole list is ordered anew.
        site.foreign("UPDATE LocCards SET Inout1 = CASE Inout1 WHEN 'I' THEN 'O' ELSE 'I' END "
                     "WHERE Loc = 11 AND CardID % 2 = 0");
        longest = 0;
        sinceTurn.start();
        form->Timer1_Timer();
        untilShown();
        for (int more = 0; more < 3; ++more) {
            QCoreApplication::processEvents();
        }
        longests.push_back(longest);
    }
    const double typical = bench::median(longests);
    bench::printRow("longest moment without a turn during a refresh (median)", typical, limit,
                    typical / limit, "<= 3.00", typical <= allowed * limit);
    const double worst = *std::max_element(longests.begin(), longests.end());
    bench::printRow("longest moment without a turn, worst of 20 refreshes", worst, limit,
                    worst / limit, "<= 3.00", worst <= allowed * limit);
}

} // namespace
} // namespace kintar

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    kintar::search::testing::SearchSite site;
    kintar::bench::fillSearchSite(site, kintar::holders);
    kintar::measureRefresh(site);
    kintar::measureTurns(site);
    return 0;
}
