#include "platform/Platform.h"

namespace kintar::platform {

std::string rulePath(const std::string& base, std::string_view rulePart) {
    std::string path = base;
    path.reserve(base.size() + rulePart.size());
    for (const char c : rulePart) {
        path += c == '\\' ? '/' : c;
    }
    return path;
}

} // namespace kintar::platform
