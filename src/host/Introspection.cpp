#include "host/Introspection.h"

#include "host/BusNames.h"
#include "host/BusTypes.h"

namespace kintar::host {

namespace {

constexpr const char* head =
    "<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object Introspection 1.0//EN\"\n"
    "\"http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd\">\n"
    "<node>\n";

constexpr const char* peer = " <interface name=\"org.freedesktop.DBus.Peer\">\n"
                             "  <method name=\"Ping\"/>\n"
                             "  <method name=\"GetMachineId\">\n"
                             "   <arg type=\"s\" name=\"machine_uuid\" direction=\"out\"/>\n"
                             "  </method>\n"
                             " </interface>\n";

constexpr const char* introspectable = " <interface name=\"org.freedesktop.DBus.Introspectable\">\n"
                                       "  <method name=\"Introspect\">\n"
                                       "   <arg type=\"s\" name=\"xml_data\" direction=\"out\"/>\n"
                                       "  </method>\n"
                                       " </interface>\n";

constexpr const char* properties = " <interface name=\"org.freedesktop.DBus.Properties\">\n"
                                   "  <method name=\"Get\">\n"
                                   "   <arg type=\"s\" name=\"interface_name\" direction=\"in\"/>\n"
                                   "   <arg type=\"s\" name=\"property_name\" direction=\"in\"/>\n"
                                   "   <arg type=\"v\" name=\"value\" direction=\"out\"/>\n"
                                   "  </method>\n"
                                   "  <method name=\"GetAll\">\n"
                                   "   <arg type=\"s\" name=\"interface_name\" direction=\"in\"/>\n"
                                   "   <arg type=\"a{sv}\" name=\"props\" direction=\"out\"/>\n"
                                   "  </method>\n"
                                   "  <method name=\"Set\">\n"
                                   "   <arg type=\"s\" name=\"interface_name\" direction=\"in\"/>\n"
                                   "   <arg type=\"s\" name=\"property_name\" direction=\"in\"/>\n"
                                   "   <arg type=\"v\" name=\"value\" direction=\"in\"/>\n"
                                   "  </method>\n"
                                   "  <signal name=\"PropertiesChanged\">\n"
                                   "   <arg type=\"s\" name=\"interface_name\"/>\n"
                                   "   <arg type=\"a{sv}\" name=\"changed_properties\"/>\n"
                                   "   <arg type=\"as\" name=\"invalidated_properties\"/>\n"
                                   "  </signal>\n"
                                   " </interface>\n";

constexpr const char* server =
    "  <method name=\"CreateObject\">\n"
    "   <arg type=\"s\" name=\"class\" direction=\"in\"/>\n"
    "   <arg type=\"o\" name=\"object\" direction=\"out\"/>\n"
    "  </method>\n"
    "  <method name=\"ReleaseObject\">\n"
    "   <arg type=\"o\" name=\"object\" direction=\"in\"/>\n"
    "  </method>\n"
    "  <property name=\"Version\" type=\"s\" access=\"read\">\n"
    "   <annotation name=\"org.freedesktop.DBus.Property.EmitsChangedSignal\" value=\"false\"/>\n"
    "  </property>\n"
    "  <property name=\"Classes\" type=\"as\" access=\"read\">\n"
    "   <annotation name=\"org.freedesktop.DBus.Property.EmitsChangedSignal\" value=\"false\"/>\n"
    "  </property>\n";

const char* accessOf(MemberKind kind) {
    switch (kind) {
    case MemberKind::WriteOnly:
        return "write";
    case MemberKind::ReadOnly:
        return "read";
    case MemberKind::ReadWrite:
    case MemberKind::Method:
        break;
    }
    return "readwrite";
}

void writeProperty(std::string& xml, const Member& member) {
    xml += "  <property name=\"" + xmlEscaped(member.name) + "\" type=\"" +
           signatureOf(member.type) + "\" access=\"" + accessOf(member.kind) + "\">\n";
    // Nobody is to cache what changes without a signal.
    xml += "   <annotation name=\"org.freedesktop.DBus.Property.EmitsChangedSignal\" value=\"";
    xml += member.signalsChange ? "true" : "false";
    xml += "\"/>\n  </property>\n";
}

void writeMethod(std::string& xml, const Member& member) {
    xml += "  <method name=\"" + xmlEscaped(member.name) + "\">\n";
    for (const Parameter& parameter : member.parameters) {
        xml += std::string("   <arg type=\"") + signatureOf(parameter.type) + "\" name=\"" +
               xmlEscaped(parameter.name) + "\" direction=\"in\"/>\n";
    }
    if (member.type != ValueType::None) {
        xml += std::string("   <arg type=\"") + signatureOf(member.type) +
               "\" name=\"result\" direction=\"out\"/>\n";
    }
    xml += "  </method>\n";
}

void writeSignal(std::string& xml, const Signal& declared) {
    xml += "  <signal name=\"" + xmlEscaped(declared.name) + "\">\n";
    for (const Parameter& parameter : declared.parameters) {
        xml += std::string("   <arg type=\"") + signatureOf(parameter.type) + "\" name=\"" +
               xmlEscaped(parameter.name) + "\"/>\n";
    }
    xml += "  </signal>\n";
}

void writeChildren(std::string& xml, const std::vector<std::string>& children) {
    for (const std::string& child : children) {
        xml += " <node name=\"" + xmlEscaped(child) + "\"/>\n";
    }
}

} // namespace

std::string introspectInstance(const PublicClass& publicClass) {
    std::string xml = std::string(head) + " <interface name=\"" +
                      xmlEscaped(classInterface(publicClass.name)) + "\">\n";
    for (const Member& member : publicClass.members) {
        if (member.kind == MemberKind::Method) {
            writeMethod(xml, member);
        } else {
            writeProperty(xml, member);
        }
    }
    for (const Signal& declared : publicClass.signals) {
        writeSignal(xml, declared);
    }
    xml += std::string(" </interface>\n") + properties + introspectable + peer;
    return xml + "</node>\n";
}

std::string introspectServer(const std::vector<std::string>& children) {
    std::string xml = std::string(head) + " <interface name=\"" + serverInterface + "\">\n" +
                      server + " </interface>\n" + properties + introspectable + peer;
    writeChildren(xml, children);
    return xml + "</node>\n";
}

std::string introspectFolder(const std::vector<std::string>& children) {
    std::string xml = std::string(head) + introspectable + peer;
    writeChildren(xml, children);
    return xml + "</node>\n";
}

std::string xmlEscaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

} // namespace kintar::host
