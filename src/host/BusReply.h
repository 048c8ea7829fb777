// Answers to calls. Nothing is sent where the caller expects no answer.
#pragma once

#include "host/BusConnection.h"
#include "host/BusMessage.h"

#include <string>

namespace kintar::host {

/// An answer to `call`, to be filled and given to `reply`.
BusMessage newReply(const BusMessage& call);
void reply(BusConnection& connection, const BusMessage& call, const BusMessage& answer);
/// An answer without values.
void replyEmpty(BusConnection& connection, const BusMessage& call);
/// `name` is a constant of BusNames.h.
void replyError(BusConnection& connection, const BusMessage& call, const char* name,
                const std::string& text);

} // namespace kintar::host
