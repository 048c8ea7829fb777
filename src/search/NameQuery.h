// The statement of the name search.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace kintar::search {

/// What the search boxes, the dialog's mode and its location group ask for.
struct NameCriteria {
    std::int32_t locGrp = 0;
    std::int16_t mode = 0;
    std::string lastName;  ///< as typed; a prefix, in which the wildcards keep their meaning
    std::string firstName; ///< likewise
};

/// What the companion puts into the statement.
struct NameQueryTexts {
    /// A complete text literal.
    std::function<std::string(std::string_view text)> sqlText;
    /// The operator's company restriction with its own " AND "; may be empty.
    std::function<std::string(std::string_view column, std::int32_t locGrp, bool flag)>
        companyFilter;
};

/// The mode in which only names that own a guard-tour card are listed.
inline constexpr std::int16_t guardTourMode = 2;

/// The statement that lists the names: `ID`, `Name`, `Visitor`, `Trace`, `COMPNAME`.
std::string LoadNames(const NameCriteria& criteria, const NameQueryTexts& texts);

} // namespace kintar::search
