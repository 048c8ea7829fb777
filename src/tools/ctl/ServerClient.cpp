#include "tools/ctl/ServerClient.h"

#include "host/BusNames.h"
#include "tools/ctl/RawLine.h"
#include "tools/ctl/ValueText.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

namespace kintar::ctl {

namespace {

void check(int result, const char* doing) {
    if (result < 0) {
        throw CallError("org.freedesktop.DBus.Error.Failed",
                        std::string(doing) + ": " + std::strerror(-result));
    }
}

} // namespace

ServerClient::ServerClient() {
    const int result = sd_bus_open_user(&bus_);
    if (result < 0) {
        throw CallError("org.freedesktop.DBus.Error.NoServer",
                        std::string("no session bus: ") + std::strerror(-result));
    }
    // From the start: a server that ends right after an answer must not be missed.
    const std::string rule = std::string("type='signal',sender='org.freedesktop.DBus',"
                                         "interface='org.freedesktop.DBus',"
                                         "member='NameOwnerChanged',arg0='") +
                             host::busName + "'";
    check(sd_bus_add_match(bus_, nullptr, rule.c_str(), ownerChanged, this), "watch the server");
}

ServerClient::~ServerClient() {
    sd_bus_flush_close_unref(bus_);
}

host::BusMessage ServerClient::newCall(const std::string& path, const std::string& interface,
                                       const std::string& member) {
    sd_bus_message* raw = nullptr;
    const int result = sd_bus_message_new_method_call(bus_, &raw, host::busName, path.c_str(),
                                                      interface.c_str(), member.c_str());
    if (result < 0) {
        throw UsageError("\"" + path + "\" is no object path, or \"" + member + "\" no name");
    }
    return host::BusMessage::adopt(raw);
}

host::BusMessage ServerClient::send(const host::BusMessage& call) {
    sd_bus_error error{};
    sd_bus_message* answer = nullptr;
    const int result = sd_bus_call(bus_, call.get(), UINT64_MAX, &error, &answer);
    if (result < 0) {
        const CallError failure(error.name ? error.name : "org.freedesktop.DBus.Error.Failed",
                                error.message ? error.message : std::strerror(-result));
        sd_bus_error_free(&error);
        throw failure;
    }
    sd_bus_message_get_cookie(answer, &lastAnswer_);
    return host::BusMessage::adopt(answer);
}

std::string ServerClient::version() {
    const host::BusMessage call = newCall(host::rootPath, host::propertiesInterface, "Get");
    check(sd_bus_message_append(call.get(), "ss", host::serverInterface, "Version"), "call");
    return readText(send(call));
}

std::vector<std::string> ServerClient::classes() {
    const host::BusMessage call = newCall(host::rootPath, host::propertiesInterface, "Get");
    check(sd_bus_message_append(call.get(), "ss", host::serverInterface, "Classes"), "call");
    const host::BusMessage answer = send(call);
    check(sd_bus_message_enter_container(answer.get(), 'v', "as"), "classes");
    check(sd_bus_message_enter_container(answer.get(), 'a', "s"), "classes");
    std::vector<std::string> names;
    const char* name = nullptr;
    while (sd_bus_message_read_basic(answer.get(), 's', &name) > 0) {
        names.emplace_back(name);
    }
    return names;
}

std::string ServerClient::introspect(const std::string& path) {
    return readText(send(newCall(path, host::introspectableInterface, "Introspect")));
}

std::string ServerClient::create(const std::string& publicClass) {
    const host::BusMessage call = newCall(host::rootPath, host::serverInterface, "CreateObject");
    appendText(call, "s", publicClass, "create");
    const host::BusMessage answer = send(call);
    server_ = answer.sender();
    created_.push_back(readText(answer));
    return created_.back();
}

void ServerClient::release(const std::string& path) {
    const host::BusMessage call = newCall(host::rootPath, host::serverInterface, "ReleaseObject");
    check(sd_bus_message_append_basic(call.get(), 'o', path.c_str()), "release");
    send(call);
    std::erase(created_, path);
    interfaces_.erase(path);
}

void ServerClient::releaseAll() {
    while (!created_.empty()) {
        const std::string path = created_.back();
        created_.pop_back();
        try {
            release(path);
        } catch (const CallError&) {
            continue;
        }
    }
}

void ServerClient::set(const std::string& path, const std::string& member,
                       const std::string& value) {
    const MemberDescription& property = memberOf(path, member);
    if (property.isMethod) {
        throw UsageError(member + " is a method; use call");
    }
    const host::BusMessage call = newCall(path, host::propertiesInterface, "Set");
    check(sd_bus_message_append(call.get(), "ss", interfaceOf(path).name.c_str(), member.c_str()),
          "set");
    check(sd_bus_message_open_container(call.get(), 'v', property.type.c_str()), "set");
    appendText(call, property.type, value, member);
    check(sd_bus_message_close_container(call.get()), "set");
    send(call);
}

std::string ServerClient::get(const std::string& path, const std::string& member) {
    const host::BusMessage call = newCall(path, host::propertiesInterface, "Get");
    check(sd_bus_message_append(call.get(), "ss", interfaceOf(path).name.c_str(), member.c_str()),
          "get");
    return readText(send(call));
}

std::vector<std::pair<std::string, std::string>> ServerClient::getAll(const std::string& path) {
    const host::BusMessage call = newCall(path, host::propertiesInterface, "GetAll");
    check(sd_bus_message_append(call.get(), "s", interfaceOf(path).name.c_str()), "getall");
    const host::BusMessage answer = send(call);
    std::vector<std::pair<std::string, std::string>> all;
    check(sd_bus_message_enter_container(answer.get(), 'a', "{sv}"), "getall");
    while (sd_bus_message_enter_container(answer.get(), 'e', "sv") > 0) {
        const std::string name = readText(answer);
        all.emplace_back(name, readText(answer));
        check(sd_bus_message_exit_container(answer.get()), "getall");
    }
    return all;
}

std::optional<std::string> ServerClient::call(const std::string& path, const std::string& member,
                                              const std::vector<std::string>& values) {
    const MemberDescription& method = memberOf(path, member);
    if (!method.isMethod) {
        throw UsageError(member + " is a property; use get or set");
    }
    if (values.size() > method.arguments.size()) {
        throw UsageError(method.line() + " takes fewer values");
    }
    const host::BusMessage call = newCall(path, interfaceOf(path).name, member);
    for (std::size_t i = 0; i < values.size(); ++i) {
        appendText(call, method.arguments[i].type, values[i],
                   member + " " + method.arguments[i].name);
    }
    const host::BusMessage answer = send(call);
    if (method.type.empty()) {
        return std::nullopt;
    }
    return readText(answer);
}

const InterfaceDescription& ServerClient::interfaceOf(const std::string& path) {
    const auto known = interfaces_.find(path);
    if (known != interfaces_.end()) {
        return known->second;
    }
    return interfaces_.emplace(path, parseInterface(introspect(path))).first->second;
}

const MemberDescription& ServerClient::memberOf(const std::string& path,
                                                const std::string& member) {
    const InterfaceDescription& interface = interfaceOf(path);
    const MemberDescription* found = interface.find(member);
    if (!found) {
        throw UsageError("there is no member " + member + " in " + interface.name);
    }
    return *found;
}

bool ServerClient::hold(std::optional<double> seconds, const std::function<bool()>& stop) {
    using Clock = std::chrono::steady_clock;
    // In microseconds. A signal between a look at `stop` and the wait behind it does not end that.
    constexpr std::uint64_t oneWait = 100000;
    const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                        std::chrono::duration<double>(seconds.value_or(0)));
    // In this order: what `stop` asks a server that has gone would start another one.
    while (!serverLeft_ && !stop()) {
        const auto left =
            std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now()).count();
        if (seconds && left <= 0) {
            break;
        }
        int result = sd_bus_process(bus_, nullptr);
        if (result == 0) {
            result = sd_bus_wait(bus_, seconds ? std::min(static_cast<std::uint64_t>(left), oneWait)
                                               : oneWait);
        }
        if (result < 0 && result != -EINTR) {
            serverLeft_ = true;
        }
    }
    return !serverLeft_;
}

void ServerClient::countTrue(const std::string& path, const std::string& member) {
    countedMember_ = member;
    check(sd_bus_match_signal(bus_, nullptr, nullptr, path.c_str(), host::propertiesInterface,
                              "PropertiesChanged", memberChanged, this),
          "watch the object");
    while (sd_bus_process(bus_, nullptr) > 0) {
    }
    trueCount_ = 0;
}

int ServerClient::memberChanged(sd_bus_message* message, void* userdata, sd_bus_error*) {
    auto* client = static_cast<ServerClient*>(userdata);
    if (sd_bus_message_skip(message, "s") < 0 ||
        sd_bus_message_enter_container(message, 'a', "{sv}") < 0) {
        return 0;
    }
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        const char* name = nullptr;
        if (sd_bus_message_read_basic(message, 's', &name) < 0) {
            return 0;
        }
        int value = 0;
        if (client->countedMember_ == name && sd_bus_message_read(message, "v", "b", &value) > 0) {
            client->trueCount_ += value != 0 ? 1U : 0U;
        } else if (client->countedMember_ == name || sd_bus_message_skip(message, "v") < 0) {
            return 0;
        }
        sd_bus_message_exit_container(message);
    }
    return 0;
}

int ServerClient::ownerChanged(sd_bus_message* message, void* userdata, sd_bus_error*) {
    auto* client = static_cast<ServerClient*>(userdata);
    const char* name = nullptr;
    const char* before = nullptr;
    const char* after = nullptr;
    if (sd_bus_message_read(message, "sss", &name, &before, &after) > 0 &&
        !client->server_.empty() && client->server_ == before) {
        client->serverLeft_ = true;
    }
    return 0;
}

void ServerClient::onPrintEnded(
    const std::string& path,
    std::function<void(std::int16_t request, const std::string& error)> ended) {
    printEnded_ = std::move(ended);
    // Without a slot of its own the watch lives as long as the connection.
    check(sd_bus_match_signal(bus_, nullptr, host::busName, path.c_str(),
                              "net.tarnholm.Kintar3.objNameSearch", "PrintEnded", printEnded, this),
          "watch the printing");
}

int ServerClient::printEnded(sd_bus_message* message, void* userdata, sd_bus_error*) {
    const auto* client = static_cast<ServerClient*>(userdata);
    std::uint64_t cookie = 0;
    sd_bus_message_get_cookie(message, &cookie);
    std::int16_t request = 0;
    const char* error = nullptr;
    if (cookie > client->lastAnswer_ && sd_bus_message_read(message, "ns", &request, &error) > 0) {
        client->printEnded_(request, error);
    }
    return 0;
}

} // namespace kintar::ctl
