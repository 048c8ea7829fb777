#include "host/BusNames.h"

namespace kintar::host {

std::string classInterface(std::string_view className) {
    return std::string(busName) + "." + std::string(className);
}

std::string classPath(std::string_view className) {
    return std::string(rootPath) + "/" + std::string(className);
}

std::string instancePath(std::string_view className, std::uint64_t number) {
    return classPath(className) + "/" + std::to_string(number);
}

} // namespace kintar::host
