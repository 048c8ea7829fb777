#include "display/EventText.h"

namespace kintar {

namespace {

std::string joined(std::string_view first, std::string_view between, std::string_view second) {
    std::string text(first);
    text += between;
    text += second;
    return text;
}

} // namespace

std::string eventCaption(std::string_view lName, std::string_view fName) {
    return joined(lName, ", ", fName);
}

std::string eventLine(std::string_view dateTime, std::string_view eventDesc) {
    return joined(dateTime, "  ", eventDesc);
}

std::string placeLine(std::string_view device, std::string_view locName) {
    return joined(device, "  ", locName);
}

std::string cardRight(std::int32_t locGrp) {
    return "L" + std::to_string(locGrp) + "M2";
}

std::string photoStatement(std::int32_t id, std::int16_t imgType) {
    return "SELECT FileName FROM Images WHERE NameID = " + std::to_string(id) +
           " AND ImgType = " + std::to_string(imgType);
}

} // namespace kintar
