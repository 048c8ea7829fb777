#include "host/InstanceSignals.h"

#include "host/BusNames.h"
#include "host/MessageValues.h"

#include <algorithm>
#include <exception>

namespace kintar::host {

void InstanceSignals::changed(std::string_view name) {
    if (!instance_.object) {
        return;
    }
    const std::string full = instance_.publicClass->name + "." + std::string(name);
    const Member* member = instance_.publicClass->find(name);
    if (!member || !member->signalsChange) {
        log_(full + " is not declared to signal changes");
        return;
    }
    // Whoever reports a change does not care whether it could be told.
    try {
        send(*member);
    } catch (const std::exception& error) {
        log_("change of " + full + " not sent: " + error.what());
    }
}

void InstanceSignals::signal(std::string_view name, const std::vector<Value>& arguments) {
    if (!instance_.object) {
        return;
    }
    const std::string full = instance_.publicClass->name + "." + std::string(name);
    const auto& declared = instance_.publicClass->signals;
    const auto found = std::find_if(declared.begin(), declared.end(),
                                    [&](const Signal& known) { return known.name == name; });
    if (found == declared.end() || found->parameters.size() != arguments.size()) {
        log_(full + " is not declared as it is sent");
        return;
    }
    try {
        send(*found, arguments);
    } catch (const std::exception& error) {
        log_("signal " + full + " not sent: " + error.what());
    }
}

void InstanceSignals::send(const Signal& declared, const std::vector<Value>& arguments) {
    sd_bus_message* raw = nullptr;
    check(sd_bus_message_new_signal(connection_.bus(), &raw, instance_.path.c_str(),
                                    instance_.interface.c_str(), declared.name.c_str()),
          "new signal");
    const BusMessage message = BusMessage::adopt(raw);
    check(sd_bus_message_set_destination(raw, instance_.owner.c_str()), "signal destination");
    for (const Value& argument : arguments) {
        appendValue(message, argument);
    }
    connection_.send(message);
}

void InstanceSignals::send(const Member& member) {
    const Value value = member.get(*instance_.object);
    sd_bus_message* raw = nullptr;
    check(sd_bus_message_new_signal(connection_.bus(), &raw, instance_.path.c_str(),
                                    propertiesInterface, "PropertiesChanged"),
          "new signal");
    const BusMessage signal = BusMessage::adopt(raw);
    check(sd_bus_message_set_destination(raw, instance_.owner.c_str()), "signal destination");
    appendText(signal, instance_.interface);
    check(sd_bus_message_open_container(raw, 'a', "{sv}"), "open properties");
    check(sd_bus_message_open_container(raw, 'e', "sv"), "open property");
    appendText(signal, member.name);
    appendVariant(signal, value);
    check(sd_bus_message_close_container(raw), "close property");
    check(sd_bus_message_close_container(raw), "close properties");
    check(sd_bus_message_append(raw, "as", 0), "no invalidated properties");
    connection_.send(signal);
}

} // namespace kintar::host
