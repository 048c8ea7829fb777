// The advanced search: building its text, and running it among 200,000 names.
#include "Beside.h"
#include "HandWrittenSearch.h"
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

/// A search beside the fastest of its hand-written forms.
struct Search {
    std::string what;
    SelectionCriteria criteria;
    bench::HandWrittenSearch handWritten;
};

SelectionCriteria blank() {
    return selection::blankCriteria(3, today);
}

bench::HandWrittenTest cards(const std::string& conditions) {
    return {"Cards k", "k.NameID", "k.LocGrp = 3 AND k.DlFlag <> 2" + conditions};
}

bench::HandWrittenTest udf(int number, const std::string& start) {
    return {"UDF u", "u.NameID",
            "u.LocGrp = 3 AND u.UdfNum = " + std::to_string(number) + " AND u.UdfText LIKE '" +
                start + "%'"};
}

bench::HandWrittenTest skill(int number) {
    return {"Skills s", "s.NameID", "s.SkillID = " + std::to_string(number)};
}

std::string notUsedSince(const std::string& day) {
    return " AND EXISTS (SELECT 1 FROM LocCards l WHERE l.CardID = k.ID AND l.Loc IN (11,12) AND "
           "l.LastDate <= '" +
           day + " 23:59:59')";
}

Search fullSearch() {
    return {"a full criteria search among 200,000 names",
            fullCriteria(),
            // The plus: the index over the first names would find three times as many.
            {" AND n.LName LIKE 'A%' AND +n.FName LIKE 'B%' AND n.Company IN "
             "(0,2,4,6,8,10,12,14,16,18) AND n.Visitor = 0 AND n.Trace = 0",
             {cards(" AND k.CardNum LIKE 'C%' AND k.Status <> 0 AND k.StartDate BETWEEN "
                    "'2010-01-01 00:00:00' AND '2012-03-14 00:00:00' AND k.StopDate BETWEEN "
                    "'2012-03-14 00:00:00' AND '2016-01-01 00:00:00' AND k.GTour = 0" +
                    notUsedSince("2012-02-29")),
              udf(1, "Blue 1"), udf(2, "Hall"), skill(1)}}};
}

/// A search that begins blank and is told what is asked for.
template <class Ask>
Search search(const std::string& what, Ask ask) {
    Search made{"    " + what, blank(), {}};
    ask(made.criteria, made.handWritten);
    return made;
}

using Criteria = SelectionCriteria;
using Hand = bench::HandWrittenSearch;

void addNameSearches(std::vector<Search>& searches) {
    searches.push_back(search("a last name", [](Criteria& c, Hand& h) {
        c.lastName = "Aname1";
        h.conditions = " AND n.LName LIKE 'Aname1%'";
    }));
    searches.push_back(search("two companies", [](Criteria& c, Hand& h) {
        c.companies = {{0, false}, {7, true}, {9, true}};
        h.conditions = " AND n.Company IN (0,7,9)";
    }));
    searches.push_back(search("visitors", [](Criteria& c, Hand& h) {
        c.visitor = selection::Choice::True;
        h.conditions = " AND n.Visitor <> 0";
    }));
}

void addCardSearches(std::vector<Search>& searches) {
    searches.push_back(search("a card number", [](Criteria& c, Hand& h) {
        c.cardCode = "123";
        h.tests = {cards(" AND CAST(k.Code AS REAL) = 123")};
    }));
    searches.push_back(search("a card number and a letter of the name", [](Criteria& c, Hand& h) {
        c.lastName = "A";
        c.cardCode = "25999";
        h.conditions = " AND n.LName LIKE 'A%'";
        h.tests = {cards(" AND CAST(k.Code AS REAL) = 25999")};
    }));
    searches.push_back(search("an imprinted number", [](Criteria& c, Hand& h) {
        c.cardNum = "C123";
        h.tests = {cards(" AND k.CardNum LIKE 'C123%'")};
    }));
    searches.push_back(search("active cards", [](Criteria& c, Hand& h) {
        c.status = selection::CardStatus::Active;
        h.tests = {cards(" AND k.Status <> 0")};
    }));
    searches.push_back(search("inactive cards", [](Criteria& c, Hand& h) {
        c.status = selection::CardStatus::Inactive;
        h.tests = {cards(" AND k.Status = 0")};
    }));
    searches.push_back(search("guard tour cards", [](Criteria& c, Hand& h) {
        c.guardTour = selection::Choice::True;
        h.tests = {cards(" AND k.GTour <> 0")};
    }));
    searches.push_back(search("cards that start in a week", [](Criteria& c, Hand& h) {
        c.startLow = DateTime::fromIso("2011-01-01").value();
        c.startHigh = DateTime::fromIso("2011-01-07").value();
        h.tests = {cards(" AND k.StartDate BETWEEN '2011-01-01 00:00:00' AND '2011-01-07 "
                         "00:00:00'")};
    }));
    searches.push_back(search("cards not used for a fortnight", [](Criteria& c, Hand& h) {
        c.notUsedDays = "14";
        h.tests = {cards(notUsedSince("2012-02-29"))};
    }));
    searches.push_back(search("cards not used for 430 days", [](Criteria& c, Hand& h) {
        c.notUsedDays = "430";
        h.tests = {cards(notUsedSince("2011-01-09"))};
    }));
}

void addFieldSearches(std::vector<Search>& searches) {
    searches.push_back(search("a field", [](Criteria& c, Hand& h) {
        c.udf = {{1, "Car", "Blue 17"}};
        h.tests = {udf(1, "Blue 17")};
    }));
    searches.push_back(search("a field that everybody has", [](Criteria& c, Hand& h) {
        c.udf = {{1, "Car", "Blue"}};
        h.tests = {udf(1, "Blue")};
    }));
    searches.push_back(search("two fields", [](Criteria& c, Hand& h) {
        c.udf = {{1, "Car", "Blue"}, {2, "Hall", "Hall 3"}};
        h.tests = {udf(1, "Blue"), udf(2, "Hall 3")};
    }));
    searches.push_back(search("30 fields", [](Criteria& c, Hand& h) {
        for (int field = 1; field <= 30; ++field) {
            const std::string value = field == 1 ? "Blue" : field == 2 ? "Hall" : "Value 1";
            c.udf.push_back({field, "Field", value});
            h.tests.push_back(udf(field, value));
        }
    }));
}

void addMixedSearches(std::vector<Search>& searches) {
    searches.push_back(search("a skill", [](Criteria& c, Hand& h) {
        c.skills = {{"1ID", true}};
        h.tests = {skill(1)};
    }));
    searches.push_back(search("a skill and a name", [](Criteria& c, Hand& h) {
        c.lastName = "Aname12";
        c.skills = {{"1ID", true}};
        h.conditions = " AND n.LName LIKE 'Aname12%'";
        h.tests = {skill(1)};
    }));
    searches.push_back(search("guard tour, a field, a skill", [](Criteria& c, Hand& h) {
        c.guardTour = selection::Choice::True;
        c.udf = {{1, "Car", "Blue 1"}};
        c.skills = {{"1ID", true}};
        h.tests = {cards(" AND k.GTour <> 0"), udf(1, "Blue 1"), skill(1)};
    }));
    searches.push_back(search("a first letter, not used, a field", [](Criteria& c, Hand& h) {
        c.firstName = "B";
        c.notUsedDays = "14";
        c.udf = {{2, "Hall", "Hall 3"}};
        h.conditions = " AND n.FName LIKE 'B%'";
        h.tests = {cards(notUsedSince("2012-02-29")), udf(2, "Hall 3")};
    }));
}

/// The fields 3 to 30, of every fortieth person.
void addFields(search::testing::SearchSite& site) {
    site.foreign(
        "BEGIN; INSERT INTO UDF WITH RECURSIVE f(n) AS (SELECT 3 UNION ALL SELECT n + 1 FROM f "
        "WHERE n < 30) SELECT ID, n, 'Value ' || (ID / 40 % 3), 3 FROM Names, f WHERE ID % 40 = 0; "
        "COMMIT; ANALYZE;");
}

bool measureSearch(search::testing::SearchSite& site, const Search& search) {
    selection::SelectionCompanion companion(site.globals());
    const auto bare = bench::fastestForm(site.database(), search.handWritten);
    std::size_t rows = 0;
    std::size_t bareRows = 0;
    bench::beside(
        search.what, 9,
        [&] {
            const std::string sql = built(companion, search.criteria);
            rows = site.globals().tarnRec().OpenRecordset(sql, site.globals().gCnn()).RecordCount();
        },
        [&] { bareRows = bare->run(); }, 2.0);
    std::printf("%-58s %zu, hand-written %zu\n", "        rows found", rows, bareRows);
    return rows == bareRows && rows > 0;
}

int measureSearches(search::testing::SearchSite& site) {
    std::vector<Search> searches{fullSearch()};
    addNameSearches(searches);
    addCardSearches(searches);
    addFieldSearches(searches);
    addMixedSearches(searches);
    bool same = true;
    for (const Search& search : searches) {
        same = measureSearch(site, search) && same;
    }
    return same ? 0 : 1;
}

} // namespace
} // namespace kintar

int main() {
    kintar::search::testing::SearchSite site;
    kintar::measureText(site.globals());
    kintar::bench::fillSearchSite(site, 200000);
    kintar::addFields(site);
    return kintar::measureSearches(site);
}
