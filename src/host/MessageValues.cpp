#include "host/MessageValues.h"

#include "base/Unicode.h"
#include "host/BusNames.h"
#include "host/BusTypes.h"

#include <cstring>
#include <system_error>

namespace kintar::host {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

// U+FDD0 to U+FDEF, and the last two code points of each plane, in valid UTF-8.
std::size_t nonCharacterLength(std::string_view rest) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    if (rest.size() >= 3 && byte(0) == 0xEF) {
        const bool arabicBlock = byte(1) == 0xB7 && byte(2) >= 0x90 && byte(2) <= 0xAF;
        const bool lastTwo = byte(1) == 0xBF && byte(2) >= 0xBE;
        return arabicBlock || lastTwo ? 3 : 0;
    }
    if (rest.size() >= 4 && byte(0) >= 0xF0) {
        const bool lastTwo = (byte(1) & 0x0F) == 0x0F && byte(2) == 0xBF && byte(3) >= 0xBE;
        return lastTwo ? 4 : 0;
    }
    return 0;
}

[[noreturn]] void refuse(const std::string& text) {
    throw BusError(errors::invalidArgs, text);
}

template <class T, class Raw>
T readBasic(const BusMessage& message, char type, const std::string& what) {
    Raw raw{};
    if (sd_bus_message_read_basic(message.get(), type, &raw) <= 0) {
        refuse(what + " cannot be read");
    }
    return static_cast<T>(raw);
}

DateTime readDateTime(const BusMessage& message, const std::string& what) {
    const std::string text = readText(message, 's', what);
    // One form only goes over the bus: with a T, to the second.
    if (text.size() == std::strlen("2012-03-14T17:05:00") && text[10] == 'T') {
        if (const std::optional<DateTime> value = DateTime::fromIso(text)) {
            return *value;
        }
    }
    refuse(what + " expects a date-time such as 2012-03-14T17:05:00, got \"" + text + "\"");
}

} // namespace

std::string busText(std::string_view text) {
    const std::string valid = unicode::toValidUtf8(text);
    std::string clean;
    clean.reserve(valid.size());
    for (std::size_t i = 0; i < valid.size();) {
        const std::size_t bad =
            valid[i] == '\0' ? 1 : nonCharacterLength(std::string_view(valid).substr(i));
        if (bad > 0) {
            clean += replacement;
            i += bad;
        } else {
            clean += valid[i++];
        }
    }
    return clean;
}

Value readValue(const BusMessage& message, ValueType type, const std::string& what) {
    switch (type) {
    case ValueType::Int32:
        return readBasic<std::int32_t, std::int32_t>(message, 'i', what);
    case ValueType::Int16:
        return readBasic<std::int16_t, std::int16_t>(message, 'n', what);
    case ValueType::Boolean:
        return readBasic<int, int>(message, 'b', what) != 0;
    case ValueType::String:
        return readText(message, 's', what);
    case ValueType::DateTime:
        return readDateTime(message, what);
    case ValueType::None:
        break;
    }
    return {};
}

Value readVariant(const BusMessage& message, ValueType type, const std::string& what) {
    char outer = 0;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(message.get(), &outer, &contents) <= 0 || outer != 'v') {
        refuse(what + " expects a variant");
    }
    if (std::strcmp(contents, signatureOf(type)) != 0) {
        refuse(what + " expects a " + describe(type) + ", got " + contents);
    }
    if (sd_bus_message_enter_container(message.get(), 'v', contents) <= 0) {
        refuse(what + " cannot be read");
    }
    Value value = readValue(message, type, what);
    sd_bus_message_exit_container(message.get());
    return value;
}

std::vector<Value> readArguments(const BusMessage& message, const Member& method,
                                 const std::string& what) {
    const int given = countArguments(method, message.signature());
    if (given < 0) {
        refuse(what + " expects " + describeArguments(method) + ", got (" + message.signature() +
               ")");
    }
    std::vector<Value> arguments(method.parameters.size());
    for (std::size_t i = 0; i < static_cast<std::size_t>(given); ++i) {
        const Parameter& parameter = method.parameters[i];
        arguments[i] = readValue(message, parameter.type, what + " " + parameter.name);
    }
    return arguments;
}

void expectArguments(const BusMessage& message, const char* signature, const char* what,
                     const char* arguments) {
    if (std::strcmp(message.signature(), signature) != 0) {
        refuse(std::string(what) + " expects " + arguments + ", got (" + message.signature() + ")");
    }
}

std::string readText(const BusMessage& message, char type, const std::string& what) {
    const char* text = nullptr;
    if (sd_bus_message_read_basic(message.get(), type, &text) <= 0) {
        refuse(what + " expects a text of valid characters");
    }
    return text;
}

void check(int result, const char* doing) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), doing);
    }
}

void appendText(const BusMessage& message, const std::string& text) {
    check(sd_bus_message_append_basic(message.get(), 's', busText(text).c_str()), "append text");
}

void appendValue(const BusMessage& message, const Value& value) {
    struct Append {
        const BusMessage& message;
        void basic(char type, const void* raw) const {
            check(sd_bus_message_append_basic(message.get(), type, raw), "append value");
        }
        void operator()(std::monostate) const {}
        void operator()(std::int32_t number) const { basic('i', &number); }
        void operator()(std::int16_t number) const { basic('n', &number); }
        void operator()(bool truth) const {
            const int wide = truth ? 1 : 0;
            basic('b', &wide);
        }
        void operator()(const std::string& text) const { appendText(message, text); }
        void operator()(DateTime moment) const { appendText(message, moment.iso()); }
    };
    std::visit(Append{message}, value);
}

void appendVariant(const BusMessage& message, const Value& value) {
    static constexpr ValueType types[] = {ValueType::None,   ValueType::Int32,
                                          ValueType::Int16,  ValueType::Boolean,
                                          ValueType::String, ValueType::DateTime};
    const bool none = value.index() == 0;
    check(sd_bus_message_open_container(message.get(), 'v',
                                        none ? "s" : signatureOf(types[value.index()])),
          "open variant");
    appendValue(message, none ? Value(std::string()) : value);
    check(sd_bus_message_close_container(message.get()), "close variant");
}

} // namespace kintar::host
