#include "server/ClassTable.h"

#include <algorithm>
#include <stdexcept>

namespace kintar {

namespace {

bool isNameLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// ASCII letters, digits and underscores: what every component platform takes as a name.
bool isName(std::string_view text) {
    return !text.empty() && text.size() <= 200 && isNameLetter(text.front()) &&
           std::all_of(text.begin(), text.end(),
                       [](char c) { return isNameLetter(c) || (c >= '0' && c <= '9'); });
}

bool sameIgnoringCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

[[noreturn]] void refuse(const std::string& what) {
    throw std::logic_error("class table: " + what);
}

void checkHandlers(const std::string& name, const Member& member) {
    const bool reads = member.kind == MemberKind::ReadOnly || member.kind == MemberKind::ReadWrite;
    const bool writes =
        member.kind == MemberKind::WriteOnly || member.kind == MemberKind::ReadWrite;
    if (reads != static_cast<bool>(member.get) ||
        writes != (static_cast<bool>(member.set) || static_cast<bool>(member.setLater)) ||
        (member.kind == MemberKind::Method) !=
            (static_cast<bool>(member.call) || static_cast<bool>(member.callLater)) ||
        (member.callLater && member.type != ValueType::None)) {
        refuse(name + " has not the handlers of its kind");
    }
    if (member.signalsChange && !reads) {
        refuse(name + " signals a change of what cannot be read");
    }
}

void checkMember(const PublicClass& owner, const Member& member) {
    const std::string name = owner.name + "." + member.name;
    if (!isName(member.name)) {
        refuse(name + " is no name");
    }
    if (member.kind != MemberKind::Method && member.type == ValueType::None) {
        refuse(name + " is a property without a type");
    }
    checkHandlers(name, member);
    bool optional = false;
    for (const Parameter& parameter : member.parameters) {
        if (!isName(parameter.name) || parameter.type == ValueType::None) {
            refuse(name + " has a parameter without a name or a type");
        }
        if (optional && !parameter.optional) {
            refuse(name + " has a required parameter behind an optional one");
        }
        optional = parameter.optional;
    }
}

} // namespace

void ClassTable::add(PublicClass publicClass) {
    if (!isName(publicClass.name)) {
        refuse("\"" + publicClass.name + "\" is no name");
    }
    if (!publicClass.create) {
        refuse(publicClass.name + " cannot be created");
    }
    for (const PublicClass& other : classes_) {
        if (sameIgnoringCase(other.name, publicClass.name)) {
            refuse(publicClass.name + " is there twice");
        }
    }
    for (std::size_t i = 0; i < publicClass.members.size(); ++i) {
        checkMember(publicClass, publicClass.members[i]);
        for (std::size_t j = 0; j < i; ++j) {
            if (sameIgnoringCase(publicClass.members[i].name, publicClass.members[j].name)) {
                refuse(publicClass.name + "." + publicClass.members[i].name + " is there twice");
            }
        }
    }
    classes_.push_back(std::move(publicClass));
}

const PublicClass* ClassTable::find(std::string_view name) const {
    for (const PublicClass& candidate : classes_) {
        if (candidate.name == name) {
            return &candidate;
        }
    }
    return nullptr;
}

const Member* PublicClass::find(std::string_view memberName) const {
    for (const Member& member : members) {
        if (member.name == memberName) {
            return &member;
        }
    }
    return nullptr;
}

} // namespace kintar
