// Notices when clients leave the bus.
#pragma once

#include "host/BusConnection.h"

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

namespace kintar::host {

/// Watches single clients by their unique names. A client that had left before it was watched is
/// noticed as well.
class ClientWatch {
public:
    using Left = std::function<void(const std::string& client)>;

    /// `left` is called once for a watched client, from the connection's own turn, never inside
    /// sd-bus; the client is watched no more then.
    ClientWatch(BusConnection& connection, Left left);
    ClientWatch(const ClientWatch&) = delete;
    ClientWatch& operator=(const ClientWatch&) = delete;
    ~ClientWatch();

    /// No error if it is watched already.
    void watch(const std::string& client);
    void unwatch(const std::string& client);
    [[nodiscard]] bool isWatched(const std::string& client) const {
        return watches_.contains(client);
    }

private:
    struct Watch;

    void gone(const std::string& client);
    static int ownerChanged(sd_bus_message* message, void* userdata, sd_bus_error* error);
    static int matchInstalled(sd_bus_message* message, void* userdata, sd_bus_error* error);
    static int ownerAnswered(sd_bus_message* message, void* userdata, sd_bus_error* error);

    BusConnection& connection_;
    Left left_;
    std::unordered_map<std::string, std::unique_ptr<Watch>> watches_;
};

} // namespace kintar::host
