// Names of the contract on the session bus, in one place.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar::host {

inline constexpr const char* busName = "net.tarnholm.Kintar3";
inline constexpr const char* rootPath = "/net/tarnholm/Kintar3";
inline constexpr const char* serverInterface = "net.tarnholm.Kintar3.Server";

inline constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
inline constexpr const char* introspectableInterface = "org.freedesktop.DBus.Introspectable";
inline constexpr const char* peerInterface = "org.freedesktop.DBus.Peer";

namespace errors {
inline constexpr const char* runTime = "net.tarnholm.Kintar3.Error.RunTime";
inline constexpr const char* failed = "org.freedesktop.DBus.Error.Failed";
inline constexpr const char* accessDenied = "org.freedesktop.DBus.Error.AccessDenied";
inline constexpr const char* invalidArgs = "org.freedesktop.DBus.Error.InvalidArgs";
inline constexpr const char* limitsExceeded = "org.freedesktop.DBus.Error.LimitsExceeded";
inline constexpr const char* propertyReadOnly = "org.freedesktop.DBus.Error.PropertyReadOnly";
inline constexpr const char* unknownObject = "org.freedesktop.DBus.Error.UnknownObject";
inline constexpr const char* unknownInterface = "org.freedesktop.DBus.Error.UnknownInterface";
inline constexpr const char* unknownMethod = "org.freedesktop.DBus.Error.UnknownMethod";
inline constexpr const char* unknownProperty = "org.freedesktop.DBus.Error.UnknownProperty";
} // namespace errors

/// `net.tarnholm.Kintar3.objKintar`.
std::string classInterface(std::string_view className);
/// `/net/tarnholm/Kintar3/objKintar`: the folder of a class's instances.
std::string classPath(std::string_view className);
/// `/net/tarnholm/Kintar3/objKintar/7`.
std::string instancePath(std::string_view className, std::uint64_t number);

} // namespace kintar::host
