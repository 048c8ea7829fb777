#include "search/SelectionQuery.h"

#include "base/Number.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace kintar::selection {
namespace {

constexpr std::string_view namesOfGroup =
    "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, Trace, "
    "Company.Name AS COMPNAME FROM [Names] LEFT JOIN Company ON [Names].LocGrp = Company.LocGrp "
    "AND [Names].Company = Company.Company WHERE [Names].LocGrp = ";

/// The whole days of a text: 0 where it is no number, a fraction cut off. More than fit are the
/// most that do: no date lies so far back either.
long long daysOf(const std::string& text) {
    std::string number = numericText(text).value_or("0");
    number.resize(std::min(number.find('.'), number.size()));
    if (!isPositive(number)) {
        return 0;
    }
    long long days = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), days);
    return error == std::errc() ? days : std::numeric_limits<long long>::max();
}

DateTime endOfDay(DateTime day) {
    return DateTime(day.dateOnly().moment() + std::chrono::hours(23) + std::chrono::minutes(59) +
                    std::chrono::seconds(59));
}

} // namespace

bool isUsed(std::string_view text) {
    return !text.empty() && text != "%";
}

SelectionQuery::SelectionQuery(SelectionCriteria input, DateTime today, SelectionServices& services)
    : criteria(std::move(input)), today_(today.dateOnly()), services_(services) {}

void SelectionQuery::BuildSql() {
    BuildNameSql();
    BuildCardSql();
    BuildUdfSql();
    BuildSkillSql();

    if (HaveCardCrit) {
        NameSql += " And [Names].ID In (" + CardSql;
    }
    if (HaveUdfCrit) {
        // The text of the fields brings the parenthesis that closes this one.
        NameSql += (HaveCardCrit ? " And NameID In (" : " And [Names].ID In (") + UdfSql;
    }
    if (HaveSkillCrit) {
        // With cards and fields the clause stands inside the cards' and yet tests the names: meant.
        NameSql +=
            (HaveCardCrit && !HaveUdfCrit ? " And NameID In (" : " And [Names].ID In (") + SkillSql;
    }
    // The cards' parenthesis is closed behind the skills: meant.
    if (HaveCardCrit) {
        NameSql += ")";
    }
    if (HaveSkillCrit) {
        NameSql += ")";
    }
    NameSql += " ORDER BY LName, FName";
}

void SelectionQuery::BuildNameSql() {
    HaveNameCrit = false;
    NameSql = std::string(namesOfGroup) + std::to_string(criteria.LocGrp);
    addLike(NameSql, HaveNameCrit, "LName", criteria.lastName);
    addLike(NameSql, HaveNameCrit, "FName", criteria.firstName);
    addCompanies();
    addChoice(NameSql, HaveNameCrit, "Visitor", criteria.visitor);
    addChoice(NameSql, HaveNameCrit, "Trace", criteria.trace);
}

void SelectionQuery::BuildCardSql() {
    // Cards that are to be deleted at the controllers (flag 2) never match.
    CardSql = "SELECT NameID FROM Cards WHERE LocGrp = " + std::to_string(criteria.LocGrp) +
              " And DlFlag <> 2";
    HaveCardCrit = false;
    locationQuery.reset();
    addCardCode();
    addLike(CardSql, HaveCardCrit, "CardNum", criteria.cardNum);
    addStatus();
    addStartDates();
    addStopDates();
    addChoice(CardSql, HaveCardCrit, "GTour", criteria.guardTour);
    addNotUsed();
}

void SelectionQuery::BuildUdfSql() {
    UdfSql.clear();
    HaveUdfCrit = false;
    std::size_t count = 0;
    std::int16_t gridRows = 1; // the heading
    for (UdfRow& row : criteria.udf) {
        gridRows = add16(gridRows, 1);
        if (!row.num || !isUsed(row.value)) {
            continue;
        }
        HaveUdfCrit = true;
        if (count == 0) {
            UdfSql =
                "SELECT UDF.NameID FROM UDF WHERE Udf.LocGrp = " + std::to_string(criteria.LocGrp) +
                " And Udf.NameID In";
        } else {
            UdfSql += " AND UDF.NameID IN";
        }
        UdfSql += " (SELECT NameID FROM UDF WHERE UdfNum = " + std::to_string(*row.num) +
                  " AND UdfText LIKE " + services_.SqlText(row.value + "%");
        row.value.clear();
        ++count;
    }
    if (count > 0) {
        // One more than was opened: it closes what the join opens in front of this text.
        UdfSql.append(count + 1, ')');
    }
}

void SelectionQuery::BuildSkillSql() {
    SkillSql.clear();
    HaveSkillCrit = false;
    std::int16_t examined = 0;
    for (SkillItem& item : criteria.skills) {
        examined = add16(examined, 1);
        if (item.selected) {
            // Only the first one counts; further ones stay selected: meant.
            item.selected = false;
            SkillSql = "SELECT Skills.NameID FROM Skills WHERE SkillID IN (" +
                       std::to_string(leadingLong(item.key)) + ")";
            HaveSkillCrit = true;
            return;
        }
    }
}

void SelectionQuery::addLike(std::string& sql, bool& haveCrit, std::string_view column,
                             std::string& text) {
    if (isUsed(text)) {
        haveCrit = true;
        sql += " AND ";
        sql += column;
        sql += " LIKE " + services_.SqlText(text + "%");
    }
    text.clear();
}

void SelectionQuery::addChoice(std::string& sql, bool& haveCrit, std::string_view column,
                               Choice& choice) {
    if (choice != Choice::Either) {
        haveCrit = true;
        sql += " AND ";
        sql += column;
        sql += choice == Choice::True ? " <> 0" : " = 0";
    }
    choice = Choice::Either;
}

void SelectionQuery::addCompanies() {
    const bool anySelected = std::any_of(criteria.companies.begin(), criteria.companies.end(),
                                         [](const CompanyItem& item) { return item.selected; });
    companyFilterAsked = !anySelected;
    if (anySelected) {
        HaveNameCrit = true;
        NameSql += " AND [Names].Company In " + CompanyInList();
    } else {
        CompanyFilterSql = services_.CompanyFilter("[Names].Company", criteria.LocGrp, true);
        NameSql += CompanyFilterSql;
    }
}

std::string SelectionQuery::CompanyInList() {
    // Company 0 is always in the list, and the list's first row is never examined: both meant.
    std::string list = "(0";
    std::int16_t index = 0;
    for (CompanyItem& item : criteria.companies) {
        if (index > 0 && item.selected) {
            item.selected = false;
            list += "," + std::to_string(item.data);
        }
        index = add16(index, 1);
    }
    return list + ")";
}

void SelectionQuery::addCardCode() {
    if (isUsed(criteria.cardCode)) {
        HaveCardCrit = true;
        if (const std::optional<std::string> number = numericText(criteria.cardCode)) {
            CardSql += " AND Code = " + *number;
        } else {
            CardSql += " AND Code LIKE " + services_.SqlText(criteria.cardCode + "%");
        }
    }
    criteria.cardCode.clear();
}

void SelectionQuery::addStatus() {
    // Unlike the other groups this one is not set back to "Either": meant.
    if (criteria.status != CardStatus::Either) {
        HaveCardCrit = true;
        CardSql += criteria.status == CardStatus::Active ? " AND Status <> 0" : " AND Status = 0";
    }
}

void SelectionQuery::addStartDates() {
    // A later high end alone is not looked at, unlike that of the stop dates: meant.
    if (criteria.startLow != today_ || criteria.startHigh < today_) {
        HaveCardCrit = true;
        CardSql += " AND StartDate BETWEEN " + services_.SqlDate(criteria.startLow) + " AND " +
                   services_.SqlDate(criteria.startHigh);
        criteria.startLow = criteria.startHigh = today_;
    }
}

void SelectionQuery::addStopDates() {
    if (criteria.stopLow != today_ || criteria.stopHigh != today_) {
        HaveCardCrit = true;
        CardSql += " AND StopDate BETWEEN " + services_.SqlDate(criteria.stopLow) + " AND " +
                   services_.SqlDate(criteria.stopHigh);
        criteria.stopLow = criteria.stopHigh = today_;
    }
}

void SelectionQuery::addNotUsed() {
    const long long days = daysOf(criteria.notUsedDays);
    if (days <= 0) {
        return;
    }
    HaveCardCrit = true;
    locationQuery = "SELECT Loc FROM Loc WHERE LocGrp = " + std::to_string(criteria.LocGrp);
    const std::vector<std::int32_t> locations = services_.readLocations(*locationQuery);
    if (!locations.empty()) {
        std::string list = std::to_string(locations.front());
        for (auto loc = locations.begin() + 1; loc != locations.end(); ++loc) {
            list += "," + std::to_string(*loc);
        }
        const DateTime cutOff = endOfDay(today_.plusDays(-static_cast<double>(days)));
        CardSql += " AND ID IN (SELECT CardID FROM LocCards WHERE Loc IN (" + list +
                   ") AND LastDate <= " + services_.SqlDate(cutOff) + ")";
    }
    criteria.notUsedDays.clear();
}

} // namespace kintar::selection
