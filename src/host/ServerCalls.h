// Calls on the root object: creating and releasing instances, the version, the classes.
#pragma once

#include "host/BusConnection.h"
#include "host/ClientWatch.h"
#include "host/InstanceRegistry.h"

#include <functional>
#include <string>

namespace kintar::host {

/// Carries out calls on the root object. Each answers the call, or throws what answers it.
class ServerCalls {
public:
    struct Needs {
        const ClassTable& table;
        std::string version;
        BusConnection& connection;
        InstanceRegistry& registry;
        ClientWatch& watch;
        /// Ends an instance that its owner releases.
        std::function<void(const Instance&)> end;
        /// The registry has one more or one fewer.
        std::function<void()> countChanged;
        std::function<void(const std::string&)> log;
    };

    explicit ServerCalls(Needs needs) : needs_(std::move(needs)) {}

    void run(const std::string& client, const BusMessage& call);

private:
    void createObject(const std::string& client, const BusMessage& call);
    Instance& reserve(const PublicClass& publicClass, const std::string& client);
    void initialise(Instance& instance);
    void giveBack(const Instance& instance);
    void releaseObject(const std::string& client, const BusMessage& call);
    void callProperties(const BusMessage& call);
    void get(const BusMessage& call);
    void getAll(const BusMessage& call);
    void set(const BusMessage& call);
    void appendProperty(const BusMessage& answer, const std::string& name) const;

    Needs needs_;
};

} // namespace kintar::host
