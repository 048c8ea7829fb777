#include "tools/ctl/ValueText.h"

#include "tools/ctl/RawLine.h"

#include <charconv>
#include <cstdint>

namespace kintar::ctl {

namespace {

void append(const host::BusMessage& message, char type, const void* value,
            const std::string& what) {
    if (sd_bus_message_append_basic(message.get(), type, value) < 0) {
        throw UsageError(what + " takes a text of valid UTF-8 characters");
    }
}

template <class T>
T number(const std::string& text, const std::string& what, const char* kind) {
    T value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end) {
        throw UsageError(what + " takes a " + kind + ", not \"" + text + "\"");
    }
    return value;
}

int truth(const std::string& text, const std::string& what) {
    if (text == "true" || text == "1") {
        return 1;
    }
    if (text == "false" || text == "0") {
        return 0;
    }
    throw UsageError(what + " takes true or false, not \"" + text + "\"");
}

template <class T>
std::string readNumber(const host::BusMessage& message, char type) {
    T value = 0;
    sd_bus_message_read_basic(message.get(), type, &value);
    return std::to_string(value);
}

} // namespace

void appendText(const host::BusMessage& message, const std::string& type, const std::string& text,
                const std::string& what) {
    if (type == "i") {
        const auto value = number<std::int32_t>(text, what, "32-bit integer");
        append(message, 'i', &value, what);
    } else if (type == "n") {
        const auto value = number<std::int16_t>(text, what, "16-bit integer");
        append(message, 'n', &value, what);
    } else if (type == "b") {
        const int value = truth(text, what);
        append(message, 'b', &value, what);
    } else if (type == "s") {
        append(message, 's', text.c_str(), what);
    } else {
        throw UsageError(what + " is of type " + type + ", which has no text here");
    }
}

std::string readText(const host::BusMessage& message) {
    char type = 0;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(message.get(), &type, &contents) <= 0) {
        return "";
    }
    if (type == 'v') {
        sd_bus_message_enter_container(message.get(), 'v', contents);
        std::string text = readText(message);
        sd_bus_message_exit_container(message.get());
        return text;
    }
    if (type == 'i') {
        return readNumber<std::int32_t>(message, 'i');
    }
    if (type == 'n') {
        return readNumber<std::int16_t>(message, 'n');
    }
    if (type == 'b') {
        int value = 0;
        sd_bus_message_read_basic(message.get(), 'b', &value);
        return value ? "true" : "false";
    }
    const char* text = "";
    sd_bus_message_read_basic(message.get(), type, &text);
    return text;
}

} // namespace kintar::ctl
