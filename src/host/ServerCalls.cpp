#include "host/ServerCalls.h"

#include "host/BusNames.h"
#include "host/BusReply.h"
#include "host/InstanceCalls.h"
#include "host/InstanceSignals.h"
#include "host/MessageValues.h"

#include <array>
#include <cstring>

namespace kintar::host {

namespace {

constexpr std::array<const char*, 2> propertyNames{"Version", "Classes"};

// True where the interface is the root's own; false for a standard one, which has no properties.
bool isOwnInterface(const std::string& interface) {
    if (interface.empty() || interface == serverInterface) {
        return true;
    }
    if (interface == propertiesInterface || interface == introspectableInterface ||
        interface == peerInterface) {
        return false;
    }
    unknownInterface(interface, rootPath);
}

std::string propertyName(const std::string& interface, const std::string& name) {
    if (isOwnInterface(interface)) {
        for (const char* known : propertyNames) {
            if (name == known) {
                return name;
            }
        }
    }
    throw BusError(errors::unknownProperty, "There is no property \"" + name + "\" in interface " +
                                                (interface.empty() ? serverInterface : interface));
}

[[noreturn]] void noObject(const std::string& path) {
    throw BusError(errors::unknownObject, "There is no object " + path);
}

} // namespace

void ServerCalls::run(const std::string& client, const BusMessage& call) {
    const std::string interface = interfaceOf(call, serverInterface);
    const std::string member = call.member();
    if (interface == propertiesInterface) {
        callProperties(call);
    } else if (interface != serverInterface) {
        if (interface == introspectableInterface || interface == peerInterface) {
            unknownMethod(interface, member);
        }
        unknownInterface(interface, rootPath);
    } else if (member == "CreateObject") {
        createObject(client, call);
    } else if (member == "ReleaseObject") {
        releaseObject(client, call);
    } else {
        unknownMethod(interface, member);
    }
}

void ServerCalls::createObject(const std::string& client, const BusMessage& call) {
    expectArguments(call, "s", "CreateObject", "(s class)");
    const std::string name = readText(call, 's', "the class of CreateObject");
    const PublicClass* publicClass = needs_.table.find(name);
    if (!publicClass) {
        throw BusError(errors::unknownObject, "There is no class \"" + name + "\"");
    }
    // On its way out the server has given its name away; with an instance it stays.
    if (!needs_.connection.hasName() && !needs_.connection.requestName()) {
        throw BusError(errors::failed, "The server was ending; call again");
    }
    Instance& instance = reserve(*publicClass, client);
    initialise(instance);
    const BusMessage answer = newReply(call);
    check(sd_bus_message_append_basic(answer.get(), 'o', instance.path.c_str()), "append path");
    reply(needs_.connection, call, answer);
}

Instance& ServerCalls::reserve(const PublicClass& publicClass, const std::string& client) {
    Instance* instance = needs_.registry.reserve(publicClass, client);
    if (!instance) {
        throw BusError(errors::limitsExceeded,
                       "A client may have " + std::to_string(needs_.registry.limitPerClient()) +
                           " objects, not more");
    }
    needs_.countChanged();
    return *instance;
}

void ServerCalls::initialise(Instance& instance) {
    try {
        // Before the object: a client can die while its object is being created.
        needs_.watch.watch(instance.owner);
        instance.signals =
            std::make_unique<InstanceSignals>(needs_.connection, instance, needs_.log);
        instance.object = instance.publicClass->create(*instance.signals);
        if (!instance.object) {
            throw BusError(errors::failed, instance.publicClass->name + " was not created");
        }
    } catch (...) {
        giveBack(instance);
        throw;
    }
    needs_.registry.publish(instance);
}

void ServerCalls::giveBack(const Instance& instance) {
    const std::string owner = instance.owner;
    needs_.registry.take(instance);
    if (needs_.registry.countOf(owner) == 0) {
        needs_.watch.unwatch(owner);
    }
    needs_.countChanged();
}

void ServerCalls::releaseObject(const std::string& client, const BusMessage& call) {
    expectArguments(call, "o", "ReleaseObject", "(o object)");
    const std::string path = readText(call, 'o', "the object of ReleaseObject");
    const Instance* instance = needs_.registry.find(path);
    if (!instance) {
        noObject(path);
    }
    if (instance->owner != client) {
        throw BusError(errors::accessDenied, "Only its creator may release " + path);
    }
    needs_.end(*instance);
    replyEmpty(needs_.connection, call);
}

void ServerCalls::callProperties(const BusMessage& call) {
    const std::string member = call.member();
    if (member == "Get") {
        get(call);
    } else if (member == "GetAll") {
        getAll(call);
    } else if (member == "Set") {
        set(call);
    } else {
        unknownMethod(propertiesInterface, member);
    }
}

void ServerCalls::get(const BusMessage& call) {
    expectArguments(call, "ss", "Get", "(s interface, s property)");
    const std::string interface = readText(call, 's', "the interface of Get");
    const std::string name = propertyName(interface, readText(call, 's', "the name of Get"));
    const BusMessage answer = newReply(call);
    appendProperty(answer, name);
    reply(needs_.connection, call, answer);
}

void ServerCalls::getAll(const BusMessage& call) {
    expectArguments(call, "s", "GetAll", "(s interface)");
    const bool isOwn = isOwnInterface(readText(call, 's', "the interface of GetAll"));
    const BusMessage answer = newReply(call);
    check(sd_bus_message_open_container(answer.get(), 'a', "{sv}"), "open properties");
    for (const char* name : propertyNames) {
        if (isOwn) {
            check(sd_bus_message_open_container(answer.get(), 'e', "sv"), "open property");
            appendText(answer, name);
            appendProperty(answer, name);
            check(sd_bus_message_close_container(answer.get()), "close property");
        }
    }
    check(sd_bus_message_close_container(answer.get()), "close properties");
    reply(needs_.connection, call, answer);
}

void ServerCalls::set(const BusMessage& call) {
    expectArguments(call, "ssv", "Set", "(s interface, s property, v value)");
    const std::string interface = readText(call, 's', "the interface of Set");
    const std::string name = propertyName(interface, readText(call, 's', "the name of Set"));
    throw BusError(errors::propertyReadOnly, name + " can only be read, not written");
}

void ServerCalls::appendProperty(const BusMessage& answer, const std::string& name) const {
    if (name == "Version") {
        appendVariant(answer, needs_.version);
        return;
    }
    check(sd_bus_message_open_container(answer.get(), 'v', "as"), "open classes");
    check(sd_bus_message_open_container(answer.get(), 'a', "s"), "open classes");
    for (const PublicClass& publicClass : needs_.table.classes()) {
        appendText(answer, publicClass.name);
    }
    check(sd_bus_message_close_container(answer.get()), "close classes");
    check(sd_bus_message_close_container(answer.get()), "close classes");
}

} // namespace kintar::host
