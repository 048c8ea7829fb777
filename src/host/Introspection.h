// What objects of the bus say about themselves, written from the class table.
#pragma once

#include "server/ClassTable.h"

#include <string>
#include <string_view>
#include <vector>

namespace kintar::host {

/// The introspection text of an instance.
std::string introspectInstance(const PublicClass& publicClass);

/// The introspection text of the server's root object; `children` are node names below it.
std::string introspectServer(const std::vector<std::string>& children);

/// The introspection text of a path that only leads to others.
std::string introspectFolder(const std::vector<std::string>& children);

/// Text in an XML attribute or element.
std::string xmlEscaped(std::string_view text);

} // namespace kintar::host
