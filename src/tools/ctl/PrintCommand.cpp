#include "tools/ctl/PrintCommand.h"

#include "tools/ctl/RawSession.h"

namespace kintar::ctl {
namespace {

constexpr std::int16_t statusRequest = 1;
constexpr std::int16_t whoIsInRequest = 2;

} // namespace

int printReport(ServerClient& client, std::optional<std::int32_t> loc,
                const std::function<bool()>& stop) {
    const std::string search = client.create("objNameSearch");
    const std::int16_t wanted = loc ? whoIsInRequest : statusRequest;
    std::optional<std::string> error;
    // Watched before it is asked for: the answer may be there at once.
    client.onPrintEnded(search, [&](std::int16_t request, const std::string& text) {
        if (request == wanted) {
            error = text;
        }
    });
    if (loc) {
        client.call(search, "PrintWhoIsIn", {std::to_string(*loc)});
    } else {
        client.call(search, "PrintStatus", {});
    }
    if (!client.hold(std::nullopt, [&] { return error.has_value() || stop(); })) {
        throw CallError("org.freedesktop.DBus.Error.ServiceUnknown", "the server has gone");
    }
    client.releaseAll();
    if (!error) {
        return status::callFailed; // interrupted: nobody knows whether it printed
    }
    if (!error->empty()) {
        throw CallError("net.tarnholm.Kintar3.PrintEnded", *error);
    }
    return status::ok;
}

} // namespace kintar::ctl
