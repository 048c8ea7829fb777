#include "host/InstanceCalls.h"

#include "host/BusNames.h"
#include "host/BusReply.h"
#include "host/BusTypes.h"

#include <cstring>

namespace kintar::host {

namespace {

std::string fullName(const Instance& instance, const Member& member) {
    return instance.publicClass->name + "." + member.name;
}

// The interface argument of the three property methods. An empty one means any of the object's.
bool isOwnInterface(const Instance& instance, const std::string& interface) {
    if (interface.empty() || interface == instance.interface) {
        return true;
    }
    if (interface == propertiesInterface || interface == introspectableInterface ||
        interface == peerInterface) {
        return false;
    }
    unknownInterface(interface, instance.path);
}

const Member& propertyOf(const Instance& instance, const std::string& interface,
                         const std::string& name) {
    const Member* member =
        isOwnInterface(instance, interface) ? instance.publicClass->find(name) : nullptr;
    if (!member || member->kind == MemberKind::Method) {
        throw BusError(errors::unknownProperty,
                       "There is no property \"" + name + "\" in interface " +
                           (interface.empty() ? instance.interface : interface));
    }
    return *member;
}

} // namespace

bool isIntrospection(const BusMessage& call) {
    return std::strcmp(call.member(), "Introspect") == 0 &&
           (*call.interface() == '\0' ||
            std::strcmp(call.interface(), introspectableInterface) == 0);
}

std::string interfaceOf(const BusMessage& call, const std::string& otherwise) {
    if (*call.interface() != '\0') {
        return call.interface();
    }
    const std::string member = call.member();
    const bool isProperties = member == "Get" || member == "Set" || member == "GetAll";
    return isProperties ? propertiesInterface : otherwise;
}

void unknownInterface(const std::string& interface, const std::string& path) {
    throw BusError(errors::unknownInterface,
                   "There is no interface " + interface + " at object " + path);
}

void unknownMethod(const std::string& interface, const std::string& member) {
    throw BusError(errors::unknownMethod,
                   "There is no method \"" + member + "\" in interface " + interface);
}

void InstanceCalls::run(Instance& instance, const BusMessage& call) {
    const Member* member = instance.publicClass->find(call.member());
    const bool isMethod = member && member->kind == MemberKind::Method;
    const std::string interface =
        isMethod && *call.interface() == '\0' ? instance.interface : interfaceOf(call, instance.interface);
    if (interface == propertiesInterface) {
        callProperties(instance, call);
    } else if (interface != instance.interface) {
        if (interface == introspectableInterface || interface == peerInterface) {
            unknownMethod(interface, call.member());
        }
        unknownInterface(interface, instance.path);
    } else if (isMethod) {
        callMethod(instance, call, *member);
    } else if (member) {
        throw BusError(errors::unknownMethod, "\"" + member->name + "\" in interface " + interface +
                                                  " is a property; use " + propertiesInterface);
    } else {
        unknownMethod(interface, call.member());
    }
}

void InstanceCalls::callMethod(Instance& instance, const BusMessage& call, const Member& method) {
    const std::vector<Value> arguments = readArguments(call, method, fullName(instance, method));
    if (method.callLater) {
        method.callLater(*instance.object, arguments, hold_(call));
        return;
    }
    const Value result = method.call(*instance.object, arguments);
    const BusMessage answer = newReply(call);
    if (method.type != ValueType::None) {
        appendValue(answer, result);
    }
    reply(connection_, call, answer);
}

void InstanceCalls::callProperties(Instance& instance, const BusMessage& call) {
    if (std::strcmp(call.member(), "Set") == 0) {
        set(instance, call);
    } else if (std::strcmp(call.member(), "Get") == 0) {
        get(instance, call);
    } else if (std::strcmp(call.member(), "GetAll") == 0) {
        getAll(instance, call);
    } else {
        unknownMethod(propertiesInterface, call.member());
    }
}

void InstanceCalls::get(Instance& instance, const BusMessage& call) {
    expectArguments(call, "ss", "Get", "(s interface, s property)");
    const std::string interface = readText(call, 's', "the interface of Get");
    const Member& member = propertyOf(instance, interface, readText(call, 's', "the name of Get"));
    if (!member.get) {
        throw BusError(errors::accessDenied,
                       fullName(instance, member) + " can only be written, not read");
    }
    const Value value = member.get(*instance.object);
    const BusMessage answer = newReply(call);
    appendVariant(answer, value);
    reply(connection_, call, answer);
}

void InstanceCalls::getAll(Instance& instance, const BusMessage& call) {
    expectArguments(call, "s", "GetAll", "(s interface)");
    const bool isOwn = isOwnInterface(instance, readText(call, 's', "the interface of GetAll"));
    const BusMessage answer = newReply(call);
    check(sd_bus_message_open_container(answer.get(), 'a', "{sv}"), "open properties");
    for (const Member& member : instance.publicClass->members) {
        if (isOwn && member.get) {
            const Value value = member.get(*instance.object);
            check(sd_bus_message_open_container(answer.get(), 'e', "sv"), "open property");
            appendText(answer, member.name);
            appendVariant(answer, value);
            check(sd_bus_message_close_container(answer.get()), "close property");
        }
    }
    check(sd_bus_message_close_container(answer.get()), "close properties");
    reply(connection_, call, answer);
}

void InstanceCalls::set(Instance& instance, const BusMessage& call) {
    expectArguments(call, "ssv", "Set", "(s interface, s property, v value)");
    const std::string interface = readText(call, 's', "the interface of Set");
    const Member& member = propertyOf(instance, interface, readText(call, 's', "the name of Set"));
    const std::string name = fullName(instance, member);
    if (member.kind == MemberKind::ReadOnly) {
        throw BusError(errors::propertyReadOnly, name + " can only be read, not written");
    }
    const Value value = readVariant(call, member.type, name);
    if (member.setLater) {
        member.setLater(*instance.object, value, hold_(call));
        return;
    }
    member.set(*instance.object, value);
    replyEmpty(connection_, call);
}

} // namespace kintar::host
