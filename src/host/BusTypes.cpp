#include "host/BusTypes.h"

namespace kintar::host {

const char* signatureOf(ValueType type) {
    switch (type) {
    case ValueType::None:
        break;
    case ValueType::Int32:
        return "i";
    case ValueType::Int16:
        return "n";
    case ValueType::Boolean:
        return "b";
    case ValueType::String:
    case ValueType::DateTime:
        return "s";
    }
    return "";
}

const char* describe(ValueType type) {
    switch (type) {
    case ValueType::None:
        break;
    case ValueType::Int32:
        return "32-bit integer (i)";
    case ValueType::Int16:
        return "16-bit integer (n)";
    case ValueType::Boolean:
        return "Boolean (b)";
    case ValueType::String:
        return "string (s)";
    case ValueType::DateTime:
        return "date-time (s, as 2012-03-14T17:05:00)";
    }
    return "no value";
}

std::string argumentSignature(const Member& method, std::size_t count) {
    std::string signature;
    for (std::size_t i = 0; i < count; ++i) {
        signature += signatureOf(method.parameters.at(i).type);
    }
    return signature;
}

std::size_t requiredArguments(const Member& method) {
    std::size_t count = 0;
    while (count < method.parameters.size() && !method.parameters[count].optional) {
        ++count;
    }
    return count;
}

std::string describeArguments(const Member& method) {
    std::string text = "(";
    for (const Parameter& parameter : method.parameters) {
        if (text.size() > 1) {
            text += ", ";
        }
        const std::string one = std::string(signatureOf(parameter.type)) + " " + parameter.name;
        text += parameter.optional ? "[" + one + "]" : one;
    }
    return text + ")";
}

int countArguments(const Member& method, const std::string& signature) {
    for (std::size_t i = requiredArguments(method); i <= method.parameters.size(); ++i) {
        if (argumentSignature(method, i) == signature) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

} // namespace kintar::host
