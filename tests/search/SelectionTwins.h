// A companion for the selection query that answers from memory.
#pragma once

#include "search/SelectionQuery.h"

#include <string>
#include <utility>
#include <vector>

namespace kintar::selection::testing {

inline DateTime day(const char* iso) {
    return DateTime::fromIso(iso).value();
}

inline DateTime today() {
    return day("2012-03-14");
}

class FakeServices final : public SelectionServices {
public:
    std::string SqlText(std::string_view text) override {
        std::string literal = "'";
        for (const char c : text) {
            literal += c == '\'' ? "''" : std::string(1, c);
        }
        return literal + "'";
    }
    std::string SqlDate(DateTime value) override { return "#" + value.isoWithBlank() + "#"; }
    std::string CompanyFilter(std::string_view column, std::int32_t locGrp, bool flag) override {
        asked.push_back(std::string(column) + " " + std::to_string(locGrp) +
                        (flag ? " True" : " False"));
        return filter;
    }
    std::vector<std::int32_t> readLocations(const std::string& sql) override {
        statements.push_back(sql);
        return locations;
    }

    std::string filter;
    std::vector<std::int32_t> locations;
    std::vector<std::string> asked;
    std::vector<std::string> statements;
};

/// The base select of location group 3.
inline const std::string namesOfGroup3 =
    "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, Trace, "
    "Company.Name AS COMPNAME FROM [Names] LEFT JOIN Company ON [Names].LocGrp = Company.LocGrp "
    "AND [Names].Company = Company.Company WHERE [Names].LocGrp = 3";

inline const std::string cardsOfGroup3 =
    "SELECT NameID FROM Cards WHERE LocGrp = 3 And DlFlag <> 2";

inline const std::string byName = " ORDER BY LName, FName";

} // namespace kintar::selection::testing
