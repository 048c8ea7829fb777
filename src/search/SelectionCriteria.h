// What an operator may ask for on the four tabs of the advanced search, as plain values.
#pragma once

#include "base/DateTime.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kintar::selection {

/// A group of three option buttons: visitor, trace, guard tour.
enum class Choice : std::uint8_t { Either, True, False };

enum class CardStatus : std::uint8_t { Either, Active, Inactive };

/// A row of the company list: the company's number, and whether it is selected.
struct CompanyItem {
    std::int32_t data = 0;
    bool selected = false;
    bool operator==(const CompanyItem&) const = default;
};

/// A row of the grid of user-defined fields. A row that stands for no field has no number; it adds
/// no criterion, whatever its value.
struct UdfRow {
    std::optional<std::int32_t> num;
    std::string name;
    std::string value;
    bool operator==(const UdfRow&) const = default;
};

/// A row of the skill list: its key begins with the digits of the skill's ID.
struct SkillItem {
    std::string key;
    bool selected = false;
    bool operator==(const SkillItem&) const = default;
};

/// The input of one search. A default value asks for nothing, except that the dates have to be
/// today's for that: `blankCriteria` sets them.
struct SelectionCriteria {
    std::int32_t LocGrp = 0;

    std::string lastName;
    std::string firstName;
    std::vector<CompanyItem> companies; ///< in list order
    Choice visitor = Choice::Either;
    Choice trace = Choice::Either;

    std::string cardCode;
    std::string cardNum;
    CardStatus status = CardStatus::Either;
    DateTime startLow; ///< the four dates are whole days
    DateTime startHigh;
    DateTime stopLow;
    DateTime stopHigh;
    Choice guardTour = Choice::Either;
    std::string notUsedDays;

    std::vector<UdfRow> udf;       ///< in grid order, without the heading row
    std::vector<SkillItem> skills; ///< in list order

    bool operator==(const SelectionCriteria&) const = default;
};

/// Criteria that ask for every name of a location group.
inline SelectionCriteria blankCriteria(std::int32_t locGrp, DateTime today) {
    SelectionCriteria criteria;
    criteria.LocGrp = locGrp;
    criteria.startLow = criteria.startHigh = criteria.stopLow = criteria.stopHigh =
        today.dateOnly();
    return criteria;
}

} // namespace kintar::selection
