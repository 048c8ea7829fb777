// The companion as the advanced search uses it.
#pragma once

#include "search/SelectionQuery.h"
#include "server/modGlobals.h"

#include <string>
#include <vector>

namespace kintar::selection {

/// Literals, company restriction and locations from the companion and the data connection. Every
/// member raises run-time error 91 where start-up has not supplied what it needs; database errors
/// pass.
class SelectionCompanion final : public SelectionServices {
public:
    explicit SelectionCompanion(modGlobals& globals) : globals_(globals) {}

    std::string SqlText(std::string_view text) override;
    std::string SqlDate(DateTime value) override;
    std::string CompanyFilter(std::string_view column, std::int32_t locGrp, bool flag) override;
    std::vector<std::int32_t> readLocations(const std::string& sql) override;

private:
    modGlobals& globals_;
};

/// The lists that the criteria are chosen from, as statements.
std::string companyListQuery(std::int32_t locGrp, const std::string& companyFilterSql);
std::string udfNamesQuery(std::int32_t locGrp);
std::string skillsQuery(std::int32_t locGrp);

/// A user-defined field of the group, and a skill of it.
struct UdfName {
    std::int32_t num = 0;
    std::string name;
};
struct Skill {
    std::string key; ///< the ID followed by "ID"
    std::string name;
};

std::vector<UdfName> readUdfNames(modGlobals& globals, std::int32_t locGrp);
std::vector<Skill> readSkills(modGlobals& globals, std::int32_t locGrp);
/// The company list with the operator's restriction for the column "Company", into `list`.
void fillCompanies(modGlobals& globals, std::int32_t locGrp, ListBox& list);

} // namespace kintar::selection
