#include "tools/ctl/InterfaceDescription.h"

#include <QXmlStreamReader>

#include <stdexcept>

namespace kintar::ctl {

namespace {

std::string attribute(const QXmlStreamReader& reader, const char* name) {
    return reader.attributes().value(QLatin1String(name)).toString().toStdString();
}

void readArgument(const QXmlStreamReader& reader, MemberDescription& method) {
    const std::string type = attribute(reader, "type");
    if (attribute(reader, "direction") == "out") {
        method.type = type;
    } else {
        method.arguments.push_back({attribute(reader, "name"), type});
    }
}

// Reads the members up to the end of the interface.
void readMembers(QXmlStreamReader& reader, InterfaceDescription& interface) {
    while (!reader.atEnd()) {
        const auto token = reader.readNext();
        const QStringView element = reader.name();
        if (token == QXmlStreamReader::EndElement && element == QLatin1String("interface")) {
            return;
        }
        if (token != QXmlStreamReader::StartElement) {
            continue;
        }
        if (element == QLatin1String("property")) {
            interface.members.push_back({attribute(reader, "name"),
                                         false,
                                         attribute(reader, "type"),
                                         attribute(reader, "access"),
                                         {}});
        } else if (element == QLatin1String("method")) {
            interface.members.push_back({attribute(reader, "name"), true, "", "", {}});
        } else if (element == QLatin1String("arg") && !interface.members.empty()) {
            readArgument(reader, interface.members.back());
        }
    }
}

} // namespace

std::string MemberDescription::line() const {
    if (!isMethod) {
        return "property " + name + " " + type + " " + access;
    }
    std::string text = "method " + name + " (";
    for (const ArgumentDescription& argument : arguments) {
        text += (text.back() == '(' ? "" : ", ") + argument.type + " " + argument.name;
    }
    return text + ")" + (type.empty() ? "" : " " + type);
}

const MemberDescription* InterfaceDescription::find(const std::string& member) const {
    for (const MemberDescription& candidate : members) {
        if (candidate.name == member) {
            return &candidate;
        }
    }
    return nullptr;
}

InterfaceDescription parseInterface(const std::string& xml) {
    QXmlStreamReader reader(QString::fromStdString(xml));
    InterfaceDescription interface;
    while (!reader.atEnd() && interface.name.empty()) {
        if (reader.readNext() == QXmlStreamReader::StartElement &&
            reader.name() == QLatin1String("interface") &&
            !attribute(reader, "name").starts_with("org.freedesktop.DBus.")) {
            interface.name = attribute(reader, "name");
            readMembers(reader, interface);
        }
    }
    if (reader.hasError()) {
        throw std::runtime_error("introspection cannot be read: " +
                                 reader.errorString().toStdString());
    }
    if (interface.name.empty()) {
        throw std::runtime_error("introspection shows no interface of the object's own");
    }
    return interface;
}

} // namespace kintar::ctl
