// The name search on a database server beside the server asked for the same rows with nothing
// between: the rows alone, and from the press of Search to the painted list.
#include "Beside.h"
#include "NameSearchWorld.h"
#include "ServerSite.h"

#include "companion/dialect/LiteralValue.h"
#include "companion/postgres/PostgresConnection.h"
#include "search/NameQuery.h"

#include <QApplication>

#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

namespace {

using namespace kintar;
using namespace kintar::bench;

constexpr int manyNames = 200000;
constexpr int mostNames = 1000000;

/// Names made of syllables, so that beginnings are shared as they are among real names.
std::string rows(int names) {
    const auto syllable = [](const std::string& number) {
        return "substr('BaBeBiBoDaDeDoFaFeGaGoHaHeHoKaKeKoLaLeLiLoMaMeMiMoNaNeNoPaPeRaReRiRoSaSeSi"
               "SoTaTeToVaVeWaWeZa', 1 + 2 * ((" +
               number + ") % 46)::int, 2)";
    };
    return "INSERT INTO Names SELECT i, " + syllable("i * 31 % 97") + " || lower(" +
           syllable("i * 7919") + ") || lower(" + syllable("i / 46") + ") || lower(" +
           syllable("i / 2116") + "), " + syllable("i * 104729") + " || lower(" +
           syllable("i / 7") +
           "), 1, i % 300, -(i % 20 = 0)::int, -(i % 33 = 0)::int FROM "
           "generate_series(1::bigint, " +
           std::to_string(names) +
           ") AS i;"
           "INSERT INTO Company SELECT DISTINCT 1, Company, 'Company ' || Company FROM Names;"
           "INSERT INTO LocGrp VALUES (1); INSERT INTO ImageType VALUES (1, 1, -1);"
           "INSERT INTO FormData VALUES ('ListNAMESEARCH', 1, 'Name', 2400),"
           " ('ListNAMESEARCH', 2, 'Visitor', 700), ('ListNAMESEARCH', 3, 'Trace', 700),"
           " ('ListNAMESEARCH', 4, 'Company', 1500)";
}

/// The rows of a search as the server would be asked for them by hand.
std::string bareSearch(const std::string& condition) {
    return "SELECT n.ID, coalesce(LName, '') || ', ' || coalesce(FName, ''), Visitor, Trace, "
           "c.Name FROM Names n LEFT JOIN Company c ON n.LocGrp = c.LocGrp AND n.Company = "
           "c.Company WHERE n.LocGrp = 1 " +
           condition +
           "ORDER BY kintar_fold(LName) COLLATE \"und-x-icu\" NULLS FIRST, kintar_fold(FName) "
           "COLLATE \"und-x-icu\" NULLS FIRST";
}

/// The rows of a search as the window reads them.
class Reader {
public:
    explicit Reader(const std::string& database)
        : connection_(database, companion::DatabaseAccess::ReadOnly) {}

    int read(const std::string& lastName) {
        search::NameCriteria criteria;
        criteria.locGrp = 1;
        criteria.mode = 1;
        criteria.lastName = lastName;
        const std::string sql = search::LoadNames(
            criteria, {[](std::string_view text) { return companion::dialect::textLiteral(text); },
                       [](std::string_view, std::int32_t, bool) { return std::string(); }});
        const auto pending = connection_.openAside(sql, [] {});
        while (!pending->waitFor(std::chrono::hours(1))) {
        }
        return static_cast<int>(pending->take().RecordCount());
    }

private:
    companion::postgres::PostgresConnection connection_;
};

void measure(const std::string& what, int names, const char* search, const std::string& condition,
             int rounds, double aim) {
    const ServerSite site(rows(names));
    Reader reader(site.database());
    NameDialog dialog(site.path());
    BareServerStatement bare(site.database(), bareSearch(condition));
    const int found = dialog.search(search);
    if (found == 0 || found != bare.run() || found != reader.read(search)) {
        throw std::runtime_error("they found different names");
    }
    beside(
        "PostgreSQL: " + what, rounds, [&] { reader.read(search); }, [&] { bare.run(); }, aim);
    beside(
        "the same in the window, to the first paint", rounds, [&] { dialog.search(search); },
        [&] { bare.run(); }, aim);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    try {
        measure("list of 200,000 names read / libpq", manyNames, "", "", 7, 1.2);
        measure("three letters among 1,000,000 names / its index", mostNames, "mok",
                "AND kintar_fold(LName) COLLATE \"C\" >= 'mok' AND kintar_fold(LName) COLLATE "
                "\"C\" < 'mol' ",
                15, 2.0);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_name_search_server: %s\n", error.what());
        return 1;
    }
    return 0;
}
