// Calls on an instance of a public class: its properties, its methods, what it says about itself.
#pragma once

#include "host/BusConnection.h"
#include "host/InstanceRegistry.h"
#include "host/MessageValues.h"

#include <functional>
#include <string>
#include <vector>

namespace kintar::host {

/// Makes the completion of a call that is answered later than its handler returns.
using HoldCall = std::function<Completion(const BusMessage& call)>;

/// Carries out calls of an instance's creator. Each answers the call, or throws what answers it:
/// BusError, or whatever the class's handler throws.
class InstanceCalls {
public:
    InstanceCalls(BusConnection& connection, HoldCall hold)
        : connection_(connection), hold_(std::move(hold)) {}

    void run(Instance& instance, const BusMessage& call);

private:
    void callMethod(Instance& instance, const BusMessage& call, const Member& method);
    void callProperties(Instance& instance, const BusMessage& call);
    void get(Instance& instance, const BusMessage& call);
    void getAll(Instance& instance, const BusMessage& call);
    void set(Instance& instance, const BusMessage& call);

    BusConnection& connection_;
    HoldCall hold_;
};

/// Whether this call asks an object what it is.
bool isIntrospection(const BusMessage& call);

/// The interface that the call names; where it names none, that of the standard member of its name,
/// else `otherwise`.
std::string interfaceOf(const BusMessage& call, const std::string& otherwise);

/// Throws the standard error that says that `interface` is not one of the object's.
[[noreturn]] void unknownInterface(const std::string& interface, const std::string& path);
/// Throws the standard error that says that `interface` has no such method.
[[noreturn]] void unknownMethod(const std::string& interface, const std::string& member);

} // namespace kintar::host
