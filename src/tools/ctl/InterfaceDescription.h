// The members of an object, as its introspection tells.
#pragma once

#include <string>
#include <vector>

namespace kintar::ctl {

struct ArgumentDescription {
    std::string name;
    std::string type;
};

struct MemberDescription {
    std::string name;
    bool isMethod = false;
    std::string type;   ///< of a property, or of a method's result; "" for none
    std::string access; ///< "read", "write" or "readwrite"; "" for a method
    std::vector<ArgumentDescription> arguments;

    /// One line for a person: "property LocGrp i write", "method Add (i a, n b) i".
    [[nodiscard]] std::string line() const;
};

struct InterfaceDescription {
    std::string name;
    std::vector<MemberDescription> members;

    /// Null where there is none.
    [[nodiscard]] const MemberDescription* find(const std::string& member) const;
};

/// The first interface of an introspection text that is not one of the bus's own.
/// Throws std::runtime_error where the text is no XML or has no such interface.
InterfaceDescription parseInterface(const std::string& xml);

} // namespace kintar::ctl
