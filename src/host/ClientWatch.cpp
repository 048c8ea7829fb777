#include "host/ClientWatch.h"

#include "host/MessageValues.h"

namespace kintar::host {

namespace {

constexpr const char* driver = "org.freedesktop.DBus";
constexpr const char* driverPath = "/org/freedesktop/DBus";

} // namespace

/// The match for one client, and the question whether it was there when the match was made.
struct ClientWatch::Watch {
    ClientWatch* watch = nullptr;
    std::string client;
    sd_bus_slot* match = nullptr;
    sd_bus_slot* question = nullptr;

    Watch() = default;
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch() {
        sd_bus_slot_unref(match);
        sd_bus_slot_unref(question);
    }
};

ClientWatch::ClientWatch(BusConnection& connection, Left left)
    : connection_(connection), left_(std::move(left)) {}

ClientWatch::~ClientWatch() = default;

void ClientWatch::watch(const std::string& client) {
    if (isWatched(client)) {
        return;
    }
    auto watch = std::make_unique<Watch>();
    watch->watch = this;
    watch->client = client;
    const std::string rule = std::string("type='signal',sender='") + driver + "',path='" +
                             driverPath + "',interface='" + driver +
                             "',member='NameOwnerChanged',arg0='" + client + "'";
    check(sd_bus_add_match_async(connection_.bus(), &watch->match, rule.c_str(), ownerChanged,
                                 matchInstalled, watch.get()),
          "watch client");
    // Whoever left before the match was made sends no signal any more.
    check(sd_bus_call_method_async(connection_.bus(), &watch->question, driver, driverPath, driver,
                                   "NameHasOwner", ownerAnswered, watch.get(), "s", client.c_str()),
          "watch client");
    watches_.emplace(client, std::move(watch));
}

void ClientWatch::unwatch(const std::string& client) {
    watches_.erase(client);
}

void ClientWatch::gone(const std::string& client) {
    // Not now: this runs inside sd-bus, and the slots must outlive the callback.
    connection_.post([this, client] {
        if (watches_.erase(client) > 0) {
            left_(client);
        }
    });
}

int ClientWatch::ownerChanged(sd_bus_message* message, void* userdata, sd_bus_error*) {
    auto* watch = static_cast<Watch*>(userdata);
    const char* name = nullptr;
    const char* before = nullptr;
    const char* after = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &after) > 0 && *after == '\0') {
        watch->watch->gone(watch->client);
    }
    return 0;
}

int ClientWatch::matchInstalled(sd_bus_message* message, void* userdata, sd_bus_error*) {
    auto* watch = static_cast<Watch*>(userdata);
    // A client whose end could not be noticed would keep its objects for ever.
    if (sd_bus_message_is_method_error(message, nullptr) > 0) {
        watch->watch->gone(watch->client);
    }
    return 1;
}

int ClientWatch::ownerAnswered(sd_bus_message* message, void* userdata, sd_bus_error*) {
    auto* watch = static_cast<Watch*>(userdata);
    int isThere = 0;
    if (sd_bus_message_is_method_error(message, nullptr) > 0 ||
        sd_bus_message_read(message, "b", &isThere) <= 0 || !isThere) {
        watch->watch->gone(watch->client);
    }
    return 1;
}

} // namespace kintar::host
