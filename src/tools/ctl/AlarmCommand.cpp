#include "tools/ctl/AlarmCommand.h"

#include "tools/ctl/RawLine.h"
#include "tools/ctl/RawSession.h"

#include <charconv>

namespace kintar::ctl {

std::int32_t serverColour(const std::string& colour) {
    constexpr std::size_t length = 7;
    constexpr int hexadecimal = 16;
    std::uint32_t value = 0;
    const char* const end = colour.data() + colour.size();
    if (colour.size() != length || colour.front() != '#' ||
        std::from_chars(colour.data() + 1, end, value, hexadecimal).ptr != end) {
        throw UsageError("\"" + colour + "\" is no colour such as #C00000");
    }
    const std::uint32_t red = value >> 16U;
    const std::uint32_t green = value >> 8U & 0xFFU;
    const std::uint32_t blue = value & 0xFFU;
    return static_cast<std::int32_t>(blue << 16U | green << 8U | red);
}

int announceAlarm(ServerClient& client, const AlarmRequest& request, std::optional<double> seconds,
                  const std::function<bool()>& stop) {
    const std::int32_t colour = serverColour(request.colour);
    const std::string alarm = client.create("objAlarmPopUp");
    client.set(alarm, "ForeColor", std::to_string(colour));
    client.set(alarm, "WsHandle", std::to_string(request.workstation));
    client.set(alarm, "LocName", request.locName);
    // Last: setting it shows the alarm with what was set before.
    client.set(alarm, "EventString", request.text);
    if (!client.hold(seconds, stop)) {
        throw CallError("org.freedesktop.DBus.Error.ServiceUnknown", "the server has gone");
    }
    client.releaseAll();
    return status::ok;
}

} // namespace kintar::ctl
