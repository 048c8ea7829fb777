// The texts of the photo window for an event.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar {

/// "Smith, John": the window's caption.
std::string eventCaption(std::string_view lName, std::string_view fName);
/// Time and event, with two blanks between: `Label(1)`.
std::string eventLine(std::string_view dateTime, std::string_view eventDesc);
/// Device and place, with two blanks between: `Label(2)`.
std::string placeLine(std::string_view device, std::string_view locName);
/// The right to switch cards of a location group: "L3M2".
std::string cardRight(std::int32_t locGrp);
/// The statement that finds a photo's file name.
std::string photoStatement(std::int32_t id, std::int16_t imgType);

} // namespace kintar
