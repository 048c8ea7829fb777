// How the types of the class table stand on the bus: signatures, and words for error texts.
#pragma once

#include "server/ClassTable.h"

#include <string>

namespace kintar::host {

/// The signature of one value: `i`, `n`, `b`, `s`, date-times `s`; "" for no value.
const char* signatureOf(ValueType type);

/// What a person calls the type, signature included: "32-bit integer (i)".
const char* describe(ValueType type);

/// The signature of a method's arguments when the first `count` of them are given.
std::string argumentSignature(const Member& method, std::size_t count);

/// Arguments that a call must give at least.
std::size_t requiredArguments(const Member& method);

/// `(n Loc, s Printer)`; optional ones in brackets. For error texts and documents.
std::string describeArguments(const Member& method);

/// How many arguments a call with this signature gives; -1 where the signature does not fit.
int countArguments(const Member& method, const std::string& signature);

} // namespace kintar::host
