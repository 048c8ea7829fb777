// The advanced search: building its text, and running it among 200,000 names.
#include "Beside.h"
#include "SearchData.h"

#include "search/SelectionCompanion.h"

#include <cstring>
#include <memory>

namespace kintar {
namespace {

using selection::SelectionCriteria;

const DateTime today = DateTime::fromIso("2012-03-14").value();

SelectionCriteria fullCriteria() {
    SelectionCriteria c = selection::blankCriteria(3, today);
    c.lastName = "A";
    c.firstName = "B";
    for (int company = 0; company < 20; ++company) {
        c.companies.push_back({company, company % 2 == 0});
    }
    c.visitor = c.trace = selection::Choice::False;
    c.cardNum = "C";
    c.status = selection::CardStatus::Active;
    c.startLow = DateTime::fromIso("2010-01-01").value();
    c.stopHigh = DateTime::fromIso("2016-01-01").value();
    c.guardTour = selection::Choice::False;
    c.notUsedDays = "14";
    c.udf = {{1, "Car", "Blue 1"}, {2, "Hall", "Hall"}};
    c.skills = {{"1ID", true}, {"2ID", false}};
    return c;
}

/// Literals as the companion makes them; one location, no database.
class TextServices final : public selection::SelectionServices {
public:
    explicit TextServices(TarnRec& record) : record_(record) {}
    std::string SqlText(std::string_view text) override { return record_.SqlText(text); }
    std::string SqlDate(DateTime value) override { return record_.SqlDate(value); }
    std::string CompanyFilter(std::string_view, std::int32_t, bool) override { return {}; }
    std::vector<std::int32_t> readLocations(const std::string&) override { return {11, 12}; }

private:
    TarnRec& record_;
};

std::string built(selection::SelectionServices& services, const SelectionCriteria& criteria) {
    selection::SelectionQuery query(criteria, today, services);
    query.BuildSql();
    return query.NameSql;
}

void measureText(modGlobals& globals) {
    constexpr int times = 10000;
    TextServices services(globals.tarnRec());
    const SelectionCriteria criteria = fullCriteria();
    const std::string text = built(services, criteria);
    std::size_t sum = 0;
    const auto subject = [&] {
        for (int i = 0; i < times; ++i) {
            sum += built(services, criteria).size();
        }
    };
    const auto copy = [&] {
        for (int i = 0; i < times; ++i) {
            const std::string copied(text.c_str(), text.size());
            sum += static_cast<std::size_t>(copied[copied.size() / 2]);
        }
    };
    const double seconds = bench::secondsOf(subject);
    const double limit = bench::secondsOf(copy);
    std::printf("%-58s %12.3f us beside %.3f us for copying its %zu characters (reported)\n",
                "text of a full set of criteria", seconds / times * 1e6, limit / times * 1e6,
                text.size());
    if (sum == 0) {
        std::puts("nothing was built");
    }
}

/// What somebody who knows the engine would write for the same rows.
constexpr const char* handWritten =
    "SELECT n.ID, n.LName || ', ' || n.FName, n.Visitor, n.Trace, c.Name FROM Names n LEFT JOIN "
    "Company c ON c.LocGrp = n.LocGrp AND c.Company = n.Company WHERE n.LocGrp = 3 AND n.LName "
    "LIKE 'A%' AND n.FName LIKE 'B%' AND n.Company IN (0,2,4,6,8,10,12,14,16,18) AND n.Visitor = "
    "0 AND n.Trace = 0 AND EXISTS (SELECT 1 FROM Cards k WHERE k.NameID = n.ID AND k.LocGrp = 3 "
    "AND k.DlFlag <> 2 AND k.CardNum LIKE 'C%' AND k.Status <> 0 AND k.StartDate BETWEEN "
    "'2010-01-01 00:00:00' AND '2012-03-14 00:00:00' AND k.StopDate BETWEEN '2012-03-14 00:00:00' "
    "AND '2016-01-01 00:00:00' AND k.GTour = 0 AND EXISTS (SELECT 1 FROM LocCards l WHERE l.CardID "
    "= k.ID AND l.Loc IN (11,12) AND l.LastDate <= '2012-02-29 23:59:59')) AND EXISTS (SELECT 1 "
    "FROM UDF u WHERE u.NameID = n.ID AND u.LocGrp = 3) AND EXISTS (SELECT 1 FROM UDF u WHERE "
    "u.NameID = n.ID AND u.UdfNum = 1 AND u.UdfText LIKE 'Blue 1%') AND EXISTS (SELECT 1 FROM UDF "
    "u WHERE u.NameID = n.ID AND u.UdfNum = 2 AND u.UdfText LIKE 'Hall%') AND EXISTS (SELECT 1 "
    "FROM Skills s WHERE s.NameID = n.ID AND s.SkillID = 1) ORDER BY n.LName, n.FName";

int measureSearch(search::testing::SearchSite& site) {
    selection::SelectionCompanion companion(site.globals());
    const SelectionCriteria criteria = fullCriteria();
    bench::BareStatement bare(site.database(), handWritten);
    std::size_t rows = 0;
    std::size_t bareRows = 0;
    bench::beside(
        "a full criteria search among 200,000 names", 15,
        [&] {
            const std::string sql = built(companion, criteria);
            rows = site.globals().tarnRec().OpenRecordset(sql, site.globals().gCnn()).RecordCount();
        },
        [&] { bareRows = bare.run(); }, 2.0);
    std::printf("%-58s %zu, hand-written %zu\n", "    rows found", rows, bareRows);
    return rows == bareRows && rows > 0 ? 0 : 1;
}

} // namespace
} // namespace kintar

int main() {
    kintar::search::testing::SearchSite site;
    kintar::measureText(site.globals());
    kintar::bench::fillSearchSite(site, 200000);
    return kintar::measureSearch(site);
}
