// Random searches of random people: both engines and a plain evaluation find the same.
#include "companion/Notices.h"
#include "companion/OpenDatabase.h"
#include "companion/RecordHelper.h"
#include "search/SelectionQuery.h"
#include "search/agreement/PlainSearch.h"
#include "search/agreement/RandomSite.h"
#include "support/ScratchFolder.h"
#include "support/TestDatabase.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>

namespace kintar::agreement {
namespace {

constexpr int searchesOfSite = 100;

class NoNotices final : public companion::Notices {
public:
    void writeFailed(const std::string& /*reason*/) override {}
};

std::string clauseOf(std::string_view column, const Restriction& restriction) {
    if (!restriction) {
        return {};
    }
    std::string list;
    for (const int company : *restriction) {
        list += (list.empty() ? "" : ", ") + std::to_string(company);
    }
    return " AND " + std::string(column) + " IN (" + list + ")";
}

/// What the builder of a statement asks of the companion, without a database.
class Services final : public selection::SelectionServices {
public:
    Services(companion::RecordHelper& helper, const People& people, const Restriction& restriction)
        : helper_(helper), people_(people), restriction_(restriction) {}
    std::string SqlText(std::string_view text) override { return helper_.SqlText(text); }
    std::string SqlDate(DateTime value) override { return helper_.SqlDate(value); }
    std::string CompanyFilter(std::string_view column, std::int32_t /*locGrp*/,
                              bool /*flag*/) override {
        return clauseOf(column, restriction_);
    }
    std::vector<std::int32_t> readLocations(const std::string& /*sql*/) override {
        std::vector<std::int32_t> found;
        for (const Location& location : people_.locations) {
            if (location.locGrp == group) {
                found.push_back(location.loc);
            }
        }
        return found;
    }
    int group = 0;

private:
    companion::RecordHelper& helper_;
    const People& people_;
    const Restriction& restriction_;
};

/// The people of a site in a database of one engine.
class Engine {
public:
    Engine(testing::TestEngine engine, const std::string& path, const RandomSite& site)
        : people_(site.people()), database_(engine, path) {
        database_.run(site.statements());
        database_.settle();
        connection_ =
            companion::openDatabase(database_.name(), companion::DatabaseAccess::ReadOnly);
    }

    /// The rows of a statement as the engine gives them, those of one place by their values.
    std::vector<Row> find(const std::string& sql) {
        std::vector<Row> rows;
        for (Recordset found = connection_->open(sql); !found.atEnd(); found.MoveNext()) {
            const auto value = [&](const char* column) {
                const auto& field = found.field(column);
                return field.isNull() ? MaybeText() : MaybeText(field.text());
            };
            const int id = found.field("ID").asLong();
            rows.push_back({placeOf(people_.names.at(static_cast<std::size_t>(id - 1))),
                            valuesOf(std::to_string(id), *value("Name"), value("Visitor"),
                                     value("Trace"), value("COMPNAME"))});
        }
        sortEachPlace(rows);
        return rows;
    }

private:
    static void sortEachPlace(std::vector<Row>& rows) {
        for (auto begin = rows.begin(); begin != rows.end();) {
            const auto end = std::find_if(
                begin, rows.end(), [&](const Row& row) { return row.place != begin->place; });
            std::sort(begin, end);
            begin = end;
        }
    }

    const People& people_;
    testing::TestDatabase database_;
    std::unique_ptr<companion::DatabaseConnection> connection_;
};

std::string shown(const std::vector<Row>& rows) {
    std::string text;
    for (const Row& row : rows) {
        text += "\n    " + row.values;
    }
    return text.empty() ? "\n    nobody" : text;
}

/// A site of one seed, and searches of it.
class Agreement {
public:
    explicit Agreement(std::uint64_t seed) : site_(seed) {}

    /// False with a failure of the test at the first search that is not found alike.
    bool search() {
        const Restriction restriction = site_.nextRestriction();
        return ++searches_ % 3 == 0 ? searchNames(restriction) : searchSelection(restriction);
    }
    std::size_t found = 0; ///< searches that found somebody

private:
    bool searchNames(const Restriction& restriction) {
        const search::NameCriteria criteria = site_.nextNames();
        const std::string sql =
            LoadNames(criteria, {[this](std::string_view text) { return helper_.SqlText(text); },
                                 [&](std::string_view column, std::int32_t /*locGrp*/,
                                     bool /*flag*/) { return clauseOf(column, restriction); }});
        return compare(sql, namesFound(site_.people(), criteria, restriction));
    }
    bool searchSelection(const Restriction& restriction) {
        const selection::SelectionCriteria criteria = site_.nextSelection();
        Services services(helper_, site_.people(), restriction);
        services.group = criteria.LocGrp;
        selection::SelectionQuery query(criteria, today(), services);
        query.BuildSql();
        return compare(query.NameSql, selectionFound(site_.people(), criteria, restriction));
    }
    bool compare(const std::string& sql, const std::vector<Row>& expected) {
        found += expected.empty() ? 0 : 1;
        bool equal = true;
        for (Engine* engine : {&file_, &server_}) {
            const std::vector<Row> rows = engine->find(sql);
            if (rows != expected) {
                equal = false;
                ADD_FAILURE() << (engine == &file_ ? "SQLite" : "PostgreSQL") << ", search "
                              << searches_ << ": " << sql << "\n  expected:" << shown(expected)
                              << "\n  found:" << shown(rows);
            }
        }
        return equal;
    }

    RandomSite site_;
    NoNotices notices_;
    companion::RecordHelper helper_{notices_};
    testing::ScratchFolder folder_;
    Engine file_{testing::TestEngine::Sqlite, folder_ / "site.db", site_};
    Engine server_{testing::TestEngine::Postgres, {}, site_};
    int searches_ = 0;
};

std::uint64_t numberFrom(const char* variable, std::uint64_t otherwise) {
    const char* text = std::getenv(variable);
    return text != nullptr ? std::strtoull(text, nullptr, 10) : otherwise;
}

/// So many searches, of a new site after each hundred.
void agreeFrom(std::uint64_t seed, std::uint64_t searches) {
    std::size_t found = 0;
    for (std::uint64_t done = 0; done < searches; ++seed) {
        SCOPED_TRACE("KINTAR3_SEED=" + std::to_string(seed));
        Agreement agreement(seed);
        for (int left = searchesOfSite; left > 0 && done < searches; --left, ++done) {
            ASSERT_TRUE(agreement.search());
        }
        found += agreement.found;
    }
    std::cout << searches << " searches, " << found << " of which found somebody\n";
    EXPECT_GT(found, searches / 10) << "the data must not make the comparison an empty one";
}

// KINTAR3_SEARCHES says how many. KINTAR3_SEED repeats what a failure has named.
const std::uint64_t searches = numberFrom("KINTAR3_SEARCHES", 500);

TEST(Engines, FindWhatAPlainEvaluationFinds) {
    agreeFrom(numberFrom("KINTAR3_SEED", 20120314), searches);
}

TEST(Engines, FindTheSameInSitesThatNobodyHasSeen) {
    if (std::getenv("KINTAR3_SEED") == nullptr) {
        agreeFrom(std::random_device()(), searches);
    }
}

} // namespace
} // namespace kintar::agreement
