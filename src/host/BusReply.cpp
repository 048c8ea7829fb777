#include "host/BusReply.h"

#include "host/MessageValues.h"

namespace kintar::host {

namespace {

bool isExpected(const BusMessage& call) {
    return sd_bus_message_get_expect_reply(call.get()) > 0;
}

} // namespace

BusMessage newReply(const BusMessage& call) {
    sd_bus_message* answer = nullptr;
    check(sd_bus_message_new_method_return(call.get(), &answer), "answer");
    return BusMessage::adopt(answer);
}

void reply(BusConnection& connection, const BusMessage& call, const BusMessage& answer) {
    if (isExpected(call)) {
        connection.send(answer);
    }
}

void replyEmpty(BusConnection& connection, const BusMessage& call) {
    if (isExpected(call)) {
        connection.send(newReply(call));
    }
}

void replyError(BusConnection& connection, const BusMessage& call, const char* name,
                const std::string& text) {
    if (!isExpected(call)) {
        return;
    }
    const std::string clean = busText(text);
    const sd_bus_error error{name, clean.c_str(), 0};
    sd_bus_message* answer = nullptr;
    check(sd_bus_message_new_method_error(call.get(), &answer, &error), "error answer");
    connection.send(BusMessage::adopt(answer));
}

} // namespace kintar::host
