// The statement that an advanced search sends, built from its criteria.
#pragma once

#include "base/DateTime.h"
#include "search/SelectionCriteria.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::selection {

/// What the builders ask of the companion. An error thrown here ends the build, and what was built
/// so far is of no use.
class SelectionServices {
public:
    virtual ~SelectionServices() = default;
    /// A complete text literal, quotes included.
    virtual std::string SqlText(std::string_view text) = 0;
    /// A complete date-time literal.
    virtual std::string SqlDate(DateTime value) = 0;
    /// The clause that limits `column` to what the operator may see, or nothing.
    virtual std::string CompanyFilter(std::string_view column, std::int32_t locGrp, bool flag) = 0;
    /// The location numbers that a statement with one column gives, in its order.
    virtual std::vector<std::int32_t> readLocations(const std::string& sql) = 0;
};

/// A text is used where it is neither empty nor exactly "%".
bool isUsed(std::string_view text);

/// One run of the builders. Texts and flags carry the result; `criteria` is the input as the
/// builders leave it: what a builder has read, it has cleared.
class SelectionQuery {
public:
    /// `today`: the present date; its time of day is not looked at.
    SelectionQuery(SelectionCriteria input, DateTime today, SelectionServices& services);

    /// Runs the four builders and joins what they made; `NameSql` is the finished statement then.
    /// Raises run-time error 6 where a list has more rows than a 16-bit counter can count, or where
    /// the days of a card that was not used lead out of the calendar.
    void BuildSql();

    SelectionCriteria criteria;

    std::string NameSql;
    std::string CardSql;
    std::string UdfSql;
    std::string SkillSql;
    std::string CompanyFilterSql; ///< what the companion answered, where it was asked
    bool HaveNameCrit = false;
    bool HaveCardCrit = false;
    bool HaveUdfCrit = false;
    bool HaveSkillCrit = false;
    bool companyFilterAsked = false;
    std::optional<std::string> locationQuery; ///< the statement that read the locations, if one did

private:
    void BuildNameSql();
    void BuildCardSql();
    void BuildUdfSql();
    void BuildSkillSql();

    std::string CompanyInList();
    void addLike(std::string& sql, bool& haveCrit, std::string_view column, std::string& text);
    static void addChoice(std::string& sql, bool& haveCrit, std::string_view column,
                          Choice& choice);
    void addCompanies();
    void addCardCode();
    void addStatus();
    void addStartDates();
    void addStopDates();
    void addNotUsed();

    DateTime today_;
    SelectionServices& services_;
};

} // namespace kintar::selection
