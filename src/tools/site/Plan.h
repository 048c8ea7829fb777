// What every invented site has in common: groups, locations, devices, companies, fields, operators.
#pragma once

#include <span>
#include <string_view>

namespace kintar::site {

/// Marks a location or row that has no number.
inline constexpr int none = 0;

struct Group {
    int locGrp;
    std::string_view name; ///< for people; the database has no such column
    int share;             ///< of 100 names
    int defaultImageType;  ///< 0: the group has none
    int udfNames;
    int skills;
};

/// Every location's first digit is its group. The first location of a group has the group's number:
/// the zone of an override group is looked up by that number.
struct Location {
    int loc;
    int locGrp;
    std::string_view name;
    std::string_view timeZone;
    bool dst;
    int devices; ///< the first so many of `deviceNames`
};

struct Company {
    int locGrp;
    int company;
    std::string_view name;
};

struct UdfField {
    std::string_view name;
    bool hidden;
};

struct MenuRight {
    int menu;
    int loc; ///< 0: everywhere
    bool view;
};

struct Operator {
    int id;
    int profile;
    bool allMenus;
    std::span<const MenuRight> rights;
    std::string_view summary; ///< for people
};

struct NumberedText {
    int number;
    std::string_view text;
};

std::span<const Group> groups();
const Group& group(int locGrp);
std::span<const Location> locations();
std::span<const std::string_view> deviceNames();
std::span<const Company> companies();
/// Field `i` (0 the first) has the number `i` + 1; a group has the first `Group::udfNames` of them.
std::span<const UdfField> udfFields();
/// A group has the first `Group::skills` of them.
std::span<const std::string_view> skillNames();
/// The `SKillName` row of skill `i` of a group.
constexpr int skillId(int locGrp, int i) {
    return locGrp * 100 + i + 1;
}
std::span<const Operator> operators();
/// The operator who sees only some companies.
inline constexpr int restrictedOperator = 7;
std::span<const NumberedText> texts();

} // namespace kintar::site
