// The numbers by which the windows ask the companion for texts.
#pragma once

#include <array>
#include <cstdint>

namespace kintar::textNumber {

inline constexpr std::int16_t searchNames = 204;
inline constexpr std::int16_t searchUdfs = 205;
inline constexpr std::int16_t searchCards = 206;
inline constexpr std::int16_t udfField = 208;
inline constexpr std::int16_t udfValue = 209;
inline constexpr std::int16_t alarm = 456;
inline constexpr std::int16_t scheduledOverride = 474;
inline constexpr std::int16_t newOverride = 475;
inline constexpr std::int16_t missingCommand = 477;
inline constexpr std::int16_t searchSkills = 513;
inline constexpr std::int16_t criteria = 514;

// Numbers of our own, for captions that have no other.
inline constexpr std::int16_t nameSearchOk = 10101;
inline constexpr std::int16_t enableCard = 10201;
inline constexpr std::int16_t disableCard = 10202;
inline constexpr std::int16_t positionOf = 10801;

inline constexpr std::array all{searchNames,    searchUdfs,   searchCards,       udfField,
                                udfValue,       alarm,        scheduledOverride, newOverride,
                                missingCommand, searchSkills, criteria,          nameSearchOk,
                                enableCard,     disableCard,  positionOf};

} // namespace kintar::textNumber
