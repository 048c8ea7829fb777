#include "tools/ctl/PickNameCommand.h"

#include "tools/ctl/RawSession.h"

#include <ostream>

namespace kintar::ctl {

int pickName(ServerClient& client, const PickNameRequest& request, std::optional<double> seconds,
             const std::function<bool()>& stop, std::ostream& out) {
    const std::string search = client.create("objNameSearch");
    client.set(search, "LocName", request.locName);
    client.set(search, "OprID", std::to_string(request.oprId));
    client.set(search, "NameSelMode", std::to_string(request.mode));
    client.countTrue(search, "SelNameReady");
    client.set(search, "LocGrp", std::to_string(request.locGrp));
    if (!client.hold(seconds, [&] { return stop() || client.trueCount() > 0; })) {
        throw CallError("org.freedesktop.DBus.Error.ServiceUnknown", "the server has gone");
    }
    std::string id = "0";
    if (client.trueCount() > 0) {
        id = client.get(search, "SelNameID");
    }
    if (id != "0") {
        out << id << "\t" << client.get(search, "SelName") << "\n";
    }
    client.releaseAll();
    return id == "0" ? status::callFailed : status::ok;
}

} // namespace kintar::ctl
