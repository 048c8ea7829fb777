// Searches as somebody who knows the engine would write them, in every form worth trying.
#pragma once

#include "Beside.h"
#include "SearchData.h"

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace kintar::bench {

/// A condition on another table: its alias, the column that names the person, what must hold.
struct HandWrittenTest {
    std::string table;
    std::string person;
    std::string conditions;
};

struct HandWrittenSearch {
    std::string conditions; ///< on the names, `n`, each with its own " AND "
    std::vector<HandWrittenTest> tests;
};

/// The statement with the tests of which `asList` says so as lists, the others row by row.
template <class AsList>
std::string handWritten(const HandWrittenSearch& search, AsList asList) {
    std::string sql =
        "SELECT n.ID, n.LName || ', ' || n.FName, n.Visitor, n.Trace, c.Name FROM Names n LEFT "
        "JOIN Company c ON c.LocGrp = n.LocGrp AND c.Company = n.Company WHERE n.LocGrp = 3" +
        search.conditions;
    for (std::size_t i = 0; i < search.tests.size(); ++i) {
        const HandWrittenTest& test = search.tests[i];
        sql += asList(i) ? " AND n.ID IN (SELECT " + test.person + " FROM " + test.table +
                               " WHERE " + test.conditions + ")"
                         : " AND EXISTS (SELECT 1 FROM " + test.table + " WHERE " + test.person +
                               " = n.ID AND " + test.conditions + ")";
    }
    return sql + " ORDER BY n.LName, n.FName";
}

/// The fastest form for this data: all row by row, all as lists, or any one as a list.
inline std::unique_ptr<BareStatement> fastestForm(const std::string& database,
                                                  const HandWrittenSearch& search) {
    std::vector<std::string> forms{handWritten(search, [](std::size_t) { return false; })};
    if (!search.tests.empty()) {
        forms.push_back(handWritten(search, [](std::size_t) { return true; }));
    }
    for (std::size_t list = 0; list < search.tests.size() && search.tests.size() > 1; ++list) {
        forms.push_back(handWritten(search, [list](std::size_t i) { return i == list; }));
    }
    std::unique_ptr<BareStatement> fastest;
    double least = std::numeric_limits<double>::max();
    for (const std::string& form : forms) {
        auto statement = std::make_unique<BareStatement>(database, form);
        statement->plain("PRAGMA cache_size=-131072");
        statement->run();
        const double seconds = secondsOf([&] { statement->run(); });
        if (seconds < least) {
            least = seconds;
            fastest = std::move(statement);
        }
    }
    return fastest;
}

} // namespace kintar::bench
