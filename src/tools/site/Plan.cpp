#include "tools/site/Plan.h"

#include "server/TextNumbers.h"

#include <array>
#include <string_view>

namespace kintar::site {

namespace {

constexpr std::array<Group, 4> groupList{{
    {1, "North Campus", 60, 1, 8, 10},
    {2, "Harbour", 25, 2, 30, 6},
    {3, "Airfield", 10, 0, 0, 4},
    {4, "Depot", 5, 1, 4, 0},
}};

constexpr std::array<Location, 15> locationList{{
    {1, 1, "North Campus, Head Office", "Central Standard Time", true, 8},
    {11, 1, "North Campus, Laboratory", "Eastern Standard Time", true, 6},
    {12, 1, "North Campus, Observatory", "Mountain Standard Time", true, 4},
    {13, 1, "North Campus, Desert Station", "US Mountain Standard Time", false, 3},
    {2, 2, "Harbour, Pier 1", "W. Europe Standard Time", true, 6},
    {21, 2, "Harbour, Customs House", "GMT Standard Time", true, 4},
    {22, 2, "Harbour, Πειραιάς", "GTB Standard Time", true, 4},
    {23, 2, "Harbour, חיפה", "Israel Standard Time", true, 4},
    {3, 3, "Airfield, Tower", "Tokyo Standard Time", false, 5},
    {31, 3, "Airfield, Hangar 2", "India Standard Time", false, 3},
    {32, 3, "Airfield, 北京", "China Standard Time", false, 3},
    {33, 3, "Airfield, Kathmandu", "Nepal Standard Time", false, 2},
    {4, 4, "Depot, Gate", "AUS Eastern Standard Time", true, 4},
    {41, 4, "Depot, Yard", "", false, 2},
    {42, 4, "Depot, Island Store", "Lord Howe Standard Time", true, 2},
}};

constexpr std::array<std::string_view, 8> deviceList{
    "Main Entrance In", "Main Entrance Out",     "Turnstile 1",  "Turnstile 2",
    "Car Park Barrier", "Loading Dock (O'Dowd)", "Archive Room", "Roof Terrace"};

constexpr std::array<Company, 22> companyList{{
    {1, 1, "Amberline Instruments"},
    {1, 2, "Bluewater Catering"},
    {1, 3, "Cobalt & Sons"},
    {1, 4, "D'Arcy Cleaning"},
    {1, 5, "Eisvogel Gebäudetechnik"},
    {1, 6, "Fjordljus Konsult"},
    {1, 7, "Grün & Größe"},
    {1, 8, "Νότος Μελέτες"},
    {1, 9, "Севержилстрой"},
    {1, 10, "Amberline Instruments"},
    {2, 1, "Pelican Stevedores"},
    {2, 2, "O'Hara Towage"},
    {2, 3, "Αιγαίο Ναυτιλιακή"},
    {2, 4, "נמל הצפון"},
    {2, 5, "شركة المرفأ"},
    {2, 6, "Çınar Denizcilik"},
    {3, 1, "Skylark Ground Handling"},
    {3, 2, "曙光航空服务"},
    {3, 3, "あおぞら整備"},
    {3, 4, "हिमालय सेवा"},
    {4, 1, "Wombat Haulage"},
    {4, 2, "Łódź Transport"},
}};

constexpr std::array<UdfField, 30> udfList{{
    {"Badge colour", false},     {"Office", false},
    {"Web page", false},         {"Emergency contact", true},
    {"Car registration", false}, {"Date of birth", true},
    {"Phone extension", false},  {"Cost centre", false},
    {"Locker", false},           {"Shift", false},
    {"Union member", true},      {"Shoe size", false},
    {"Helmet number", false},    {"First aid until", false},
    {"Forklift licence", false}, {"Crane licence", false},
    {"Diver's licence", false},  {"Blood group", true},
    {"Nationality", false},      {"Languages", false},
    {"Supervisor", false},       {"Contract until", false},
    {"Escort required", false},  {"Key ring", false},
    {"Radio call sign", false},  {"Parking space", false},
    {"Meal plan", false},        {"Remarks", false},
    {"Σημείωση (notes)", false}, {"ملاحظات", false},
}};

constexpr std::array<std::string_view, 10> skillList{
    "First aid",      "Fire warden", "Forklift", "Welding",         "Crane operator",
    "Night security", "Electrician", "Diver",    "Hazardous goods", "Interpreter (日本語)"};

constexpr std::array<MenuRight, 2> everywhere{{{2, 0, true}, {1061, 0, true}}};
constexpr std::array<MenuRight, 2> firstGroupOnly{{{2, 1, true}, {1061, 11, true}}};
constexpr std::array<MenuRight, 2> cardsOnly{{{2, 0, true}, {1061, 0, false}}};
constexpr std::array<MenuRight, 2> shownButRefused{{{2, 0, false}, {1061, 0, false}}};

constexpr std::array<Operator, 7> operatorList{{
    {1, 1, true, {}, "all menus: every right everywhere"},
    {2, 2, false, everywhere, "cards and hidden fields, every location"},
    {3, 3, false, firstGroupOnly, "cards and hidden fields, group 1 only"},
    {4, 4, false, cardsOnly, "cards everywhere, no hidden fields"},
    {5, 5, false, shownButRefused, "rows for both rights, both refused"},
    {6, 6, false, {}, "no rights at all"},
    {7, 1, true, {}, "every right, sees only companies 1 and 3 of group 1"},
}};

constexpr std::array<NumberedText, 15> textList{{
    {textNumber::searchNames, "Search Names"},
    {textNumber::searchUdfs, "Search UDFs"},
    {textNumber::searchCards, "Search Cards"},
    {textNumber::udfField, "Field"},
    {textNumber::udfValue, "Value"},
    {textNumber::alarm, "Alarm"},
    {textNumber::scheduledOverride, "Scheduled Override"},
    {textNumber::newOverride, "New"},
    {textNumber::missingCommand, "Please choose a start command and a stop command."},
    {textNumber::searchSkills, "Search Skills"},
    {textNumber::criteria, "Select Name List Criteria"},
    {textNumber::nameSearchOk, "OK"},
    {textNumber::enableCard, "Enable Card"},
    {textNumber::disableCard, "Disable Card"},
    {textNumber::positionOf, "of"},
}};

} // namespace

std::span<const Group> groups() {
    return groupList;
}

const Group& group(int locGrp) {
    return groupList.at(static_cast<std::size_t>(locGrp - 1));
}

std::span<const Location> locations() {
    return locationList;
}

std::span<const std::string_view> deviceNames() {
    return deviceList;
}

std::span<const Company> companies() {
    return companyList;
}

std::span<const UdfField> udfFields() {
    return udfList;
}

std::span<const std::string_view> skillNames() {
    return skillList;
}

std::span<const Operator> operators() {
    return operatorList;
}

std::span<const NumberedText> texts() {
    return textList;
}

} // namespace kintar::site
