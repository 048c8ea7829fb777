#include "tools/ctl/OverridesCommand.h"

#include "tools/ctl/RawSession.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kintar::ctl {
namespace {

constexpr std::array<std::pair<const char*, const char*>, 5> commandMembers = {
    {{"secure", "SecureOpt"},
     {"open", "OpenOpt"},
     {"timezone", "TZOpt"},
     {"arm", "ArmOpt"},
     {"bypass", "ByPassOpt"}}};

} // namespace

std::vector<std::string> overrideCommandWords() {
    std::vector<std::string> words;
    words.reserve(commandMembers.size());
    for (const auto& [word, member] : commandMembers) {
        words.emplace_back(word);
    }
    return words;
}

int editOverrides(ServerClient& client, const OverridesRequest& request,
                  std::optional<double> seconds, const std::function<bool()>& stop) {
    const std::string editor = client.create("objOverride");
    client.set(editor, "PointType", std::to_string(request.type));
    client.set(editor, "PointName", request.pointName);
    client.set(editor, "LocName", request.locName);
    client.set(editor, "OprName", request.oprName);
    client.set(editor, "OprID", std::to_string(request.oprId));
    for (const auto& [word, member] : commandMembers) {
        const bool accepted = std::ranges::count(request.commands, word) > 0;
        client.set(editor, member, accepted ? "true" : "false");
    }
    client.set(editor, "PointID", std::to_string(request.point));
    // The change of Done wakes the connection; then it is asked, and nothing is asked in between.
    const auto ended = [&] { return stop() || client.get(editor, "Done") == "true"; };
    if (!client.hold(seconds, ended)) {
        throw CallError("org.freedesktop.DBus.Error.ServiceUnknown", "the server has gone");
    }
    client.releaseAll();
    return status::ok;
}

} // namespace kintar::ctl
