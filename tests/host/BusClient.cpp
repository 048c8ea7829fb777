#include "host/BusClient.h"

#include "host/MessageValues.h"

#include <cstdarg>
#include <stdexcept>

namespace kintar::host {

namespace {

// Only a test that hangs ever waits this long.
constexpr std::uint64_t patienceMicroseconds = 60'000'000;

Answer answerOf(const BusMessage& message) {
    Answer answer;
    answer.message = message;
    if (sd_bus_message_is_method_error(message.get(), nullptr) > 0) {
        const sd_bus_error* error = sd_bus_message_get_error(message.get());
        answer.error = error->name;
        answer.text = error->message ? error->message : "";
    }
    return answer;
}

// Stands before the first basic value, inside its variant where it has one.
char enter(const BusMessage& message) {
    sd_bus_message_rewind(message.get(), 1);
    char type = 0;
    const char* contents = nullptr;
    sd_bus_message_peek_type(message.get(), &type, &contents);
    if (type == 'v') {
        type = *contents;
        sd_bus_message_enter_container(message.get(), 'v', contents);
    }
    return type;
}

} // namespace

std::string Answer::asText() const {
    const char* value = nullptr;
    const char type = enter(message);
    const bool read =
        (type == 's' || type == 'o') && sd_bus_message_read_basic(message.get(), type, &value) > 0;
    return read ? value : "(no text)";
}

long Answer::asNumber() const {
    std::int16_t narrow = 0;
    std::int32_t wide = 0;
    const char type = enter(message);
    if (type == 'n' && sd_bus_message_read_basic(message.get(), 'n', &narrow) > 0) {
        return narrow;
    }
    if ((type == 'i' || type == 'b') && sd_bus_message_read_basic(message.get(), type, &wide) > 0) {
        return wide;
    }
    throw std::runtime_error("no number");
}

BusClient::BusClient(const std::string& address) {
    check(sd_bus_new(&bus_), "client");
    check(sd_bus_set_address(bus_, address.c_str()), "client");
    check(sd_bus_set_bus_client(bus_, 1), "client");
    check(sd_bus_start(bus_), "client");
    check(sd_bus_add_filter(bus_, nullptr, signalled, this), "client");
}

BusClient::~BusClient() {
    leave();
}

void BusClient::leave() {
    if (bus_) {
        sd_bus_close(bus_);
        bus_ = sd_bus_unref(bus_);
    }
}

std::string BusClient::name() const {
    const char* unique = nullptr;
    check(sd_bus_get_unique_name(bus_, &unique), "name");
    return unique;
}

void BusClient::addContents(const BusMessage& message, const char* types, va_list values) {
    check(sd_bus_message_appendv(message.get(), types, values), "arguments");
}

BusMessage BusClient::message(const std::string& path, const std::string& interface,
                              const std::string& member, const char* types, ...) {
    sd_bus_message* raw = nullptr;
    check(sd_bus_message_new_method_call(bus_, &raw, busName, path.c_str(),
                                         interface.empty() ? nullptr : interface.c_str(),
                                         member.c_str()),
          "call");
    BusMessage call = BusMessage::adopt(raw);
    va_list values;
    va_start(values, types);
    addContents(call, types, values);
    va_end(values);
    return call;
}

Answer BusClient::send(const BusMessage& call) {
    return finish(*start(call));
}

std::shared_ptr<PendingCall> BusClient::start(const BusMessage& call) {
    auto pending = std::make_shared<PendingCall>();
    // Never times out: a test that waits for ever is seen by its runner.
    check(sd_bus_call_async(bus_, nullptr, call.get(), answered, pending.get(), UINT64_MAX),
          "call");
    return pending;
}

const Answer& BusClient::finish(PendingCall& call) {
    while (!call.done) {
        work();
    }
    return call.answer;
}

void BusClient::post(const BusMessage& call) {
    check(sd_bus_message_set_expect_reply(call.get(), 0), "no answer");
    check(sd_bus_send(bus_, call.get(), nullptr), "send");
    flush();
}

void BusClient::work() {
    const int result = sd_bus_process(bus_, nullptr);
    check(result, "client lost the bus");
    if (result == 0 && sd_bus_wait(bus_, patienceMicroseconds) == 0) {
        throw std::runtime_error("nothing came");
    }
}

Answer BusClient::createAnswer(const std::string& publicClass) {
    return send(message(rootPath, serverInterface, "CreateObject", "s", publicClass.c_str()));
}

std::string BusClient::create(const std::string& publicClass) {
    const Answer answer = createAnswer(publicClass);
    return answer.ok() ? answer.asText() : "";
}

Answer BusClient::release(const std::string& path) {
    return send(message(rootPath, serverInterface, "ReleaseObject", "o", path.c_str()));
}

Answer BusClient::get(const std::string& path, const std::string& property) {
    return send(message(path, propertiesInterface, "Get", "ss", interfaceAt(path).c_str(),
                        property.c_str()));
}

Answer BusClient::set(const std::string& path, const std::string& property, const char* type, ...) {
    const BusMessage call = message(path, propertiesInterface, "Set", "ss",
                                    interfaceAt(path).c_str(), property.c_str());
    check(sd_bus_message_open_container(call.get(), 'v', type), "variant");
    va_list values;
    va_start(values, type);
    addContents(call, type, values);
    va_end(values);
    check(sd_bus_message_close_container(call.get()), "variant");
    return send(call);
}

BusMessage BusClient::setMessage(const std::string& path, const std::string& property,
                                 std::int32_t value) {
    return message(path, propertiesInterface, "Set", "ssv", interfaceAt(path).c_str(),
                   property.c_str(), "i", value);
}

Answer BusClient::call(const std::string& path, const std::string& method) {
    return send(message(path, interfaceAt(path), method));
}

std::string BusClient::introspect(const std::string& path) {
    const Answer answer = send(message(path, introspectableInterface, "Introspect"));
    return answer.ok() ? answer.asText() : answer.error;
}

void BusClient::waitForSignals(std::size_t count) {
    while (signals_.size() < count) {
        work();
    }
}

int BusClient::answered(sd_bus_message* message, void* userdata, sd_bus_error*) {
    auto* pending = static_cast<PendingCall*>(userdata);
    pending->answer = answerOf(BusMessage::adopt(sd_bus_message_ref(message)));
    pending->done = true;
    return 0;
}

int BusClient::signalled(sd_bus_message* message, void* userdata, sd_bus_error*) {
    if (sd_bus_message_is_signal(message, propertiesInterface, "PropertiesChanged") > 0) {
        const char* interface = nullptr;
        const char* property = nullptr;
        sd_bus_message_read_basic(message, 's', &interface);
        sd_bus_message_enter_container(message, 'a', "{sv}");
        sd_bus_message_enter_container(message, 'e', "sv");
        sd_bus_message_read_basic(message, 's', &property);
        static_cast<BusClient*>(userdata)->signals_.push_back(
            std::string(sd_bus_message_get_path(message)) + " " + interface + " " + property);
        sd_bus_message_rewind(message, 1);
    } else if (sd_bus_message_is_signal(message, nullptr, "Told") > 0) {
        std::int16_t number = 0;
        const char* text = nullptr;
        sd_bus_message_read(message, "ns", &number, &text);
        static_cast<BusClient*>(userdata)->signals_.push_back(
            std::string(sd_bus_message_get_path(message)) + " " +
            sd_bus_message_get_interface(message) + " Told " + std::to_string(number) + " " + text);
        sd_bus_message_rewind(message, 1);
    }
    return 0;
}

std::string interfaceAt(const std::string& path) {
    const std::string root = std::string(rootPath) + "/";
    if (!path.starts_with(root)) {
        return serverInterface;
    }
    return classInterface(path.substr(root.size(), path.find('/', root.size()) - root.size()));
}

} // namespace kintar::host
