// Values of the class table in messages of the bus, strictly by type.
#pragma once

#include "host/BusMessage.h"
#include "server/ClassTable.h"

#include <string>
#include <string_view>
#include <vector>

namespace kintar::host {

/// Text that the bus takes: valid UTF-8 without NUL and without code points that are no characters;
/// each of those becomes U+FFFD.
std::string busText(std::string_view text);

/// The next value of the message, which has the type's signature. `what` names it in errors.
/// Throws BusError InvalidArgs where a text is none, or no date-time where one is due.
Value readValue(const BusMessage& message, ValueType type, const std::string& what);

/// The next value of the message, in a variant. Throws BusError InvalidArgs where it holds another
/// type.
Value readVariant(const BusMessage& message, ValueType type, const std::string& what);

/// The arguments of a method call; optional ones that are left out are no value. Throws BusError
/// InvalidArgs where they are not what the method takes.
std::vector<Value> readArguments(const BusMessage& message, const Member& method,
                                 const std::string& what);

/// Throws BusError InvalidArgs where the message has not this signature; `arguments` says what the
/// call takes, as "(s class)".
void expectArguments(const BusMessage& message, const char* signature, const char* what,
                     const char* arguments);

/// The next text of the message; throws BusError InvalidArgs where it is none.
std::string readText(const BusMessage& message, char type, const std::string& what);

/// Throws std::runtime_error where the message takes no more, as the functions below do.
void check(int result, const char* doing);
void appendText(const BusMessage& message, const std::string& text);
void appendValue(const BusMessage& message, const Value& value);
/// No value becomes an empty text: a variant cannot be empty.
void appendVariant(const BusMessage& message, const Value& value);

} // namespace kintar::host
