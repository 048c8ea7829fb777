#include "tools/ctl/PhotoCommand.h"

#include "tools/ctl/RawSession.h"

namespace kintar::ctl {

int showPhoto(ServerClient& client, const PhotoEvent& event, std::optional<double> seconds,
              const std::function<bool()>& stop) {
    const std::string photo = client.create("objKintar");
    for (const auto& [member, value] : event.values) {
        client.set(photo, member, value);
    }
    // Last: setting it shows the event with what was set before.
    client.set(photo, "ID", event.id);
    if (!client.hold(seconds, stop)) {
        throw CallError("org.freedesktop.DBus.Error.ServiceUnknown", "the server has gone");
    }
    client.releaseAll();
    return status::ok;
}

} // namespace kintar::ctl
