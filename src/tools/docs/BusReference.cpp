#include "tools/docs/BusReference.h"

#include "host/BusNames.h"
#include "host/BusTypes.h"
#include "tools/ctl/RawSession.h"
#include "tools/docs/BusContract.h"

#include <algorithm>

namespace kintar::docs {

namespace {

const char* accessOf(const Member& member) {
    switch (member.kind) {
    case MemberKind::WriteOnly:
        return "write";
    case MemberKind::ReadOnly:
        return "read";
    case MemberKind::ReadWrite:
        return "read, write";
    case MemberKind::Method:
        break;
    }
    return "call";
}

std::string typeOf(const Member& member) {
    if (member.kind != MemberKind::Method) {
        return std::string("`") + host::signatureOf(member.type) + "` " +
               (member.type == ValueType::DateTime ? "date-time" : "");
    }
    std::string text = "`" + host::describeArguments(member) + "`";
    if (member.type != ValueType::None) {
        text += std::string(" gives `") + host::signatureOf(member.type) + "`";
    }
    return text;
}

// A vertical bar would end a table's cell.
std::string cell(std::string text) {
    for (std::size_t at = text.find('|'); at != std::string::npos; at = text.find('|', at + 2)) {
        text.insert(at, "\\");
    }
    while (!text.empty() && text.back() == ' ') {
        text.pop_back();
    }
    return text;
}

std::string setExample(const Member& member) {
    switch (member.type) {
    case ValueType::Int32:
        return "dbus.Int32(3)";
    case ValueType::Int16:
        return "dbus.Int16(3)";
    case ValueType::Boolean:
        return "dbus.Boolean(True)";
    case ValueType::DateTime:
        return "\"2012-03-14T17:05:00\"";
    case ValueType::String:
    case ValueType::None:
        break;
    }
    return "\"text\"";
}

std::string example(const PublicClass& publicClass) {
    const auto writable =
        std::find_if(publicClass.members.begin(), publicClass.members.end(),
                     [](const Member& member) { return member.set || member.setLater; });
    if (writable == publicClass.members.end()) {
        return "";
    }
    return "```python\nobject = create(\"" + publicClass.name + "\")\nobject.Set(\"" +
           host::classInterface(publicClass.name) + "\", \"" + writable->name + "\", " +
           setExample(*writable) + ",\n           dbus_interface=\"" + host::propertiesInterface +
           "\")\n```\n\n";
}

std::string signalsOf(const PublicClass& publicClass) {
    std::string text;
    for (const Signal& declared : publicClass.signals) {
        std::string arguments;
        for (const Parameter& parameter : declared.parameters) {
            arguments += arguments.empty() ? "" : ", ";
            arguments += std::string(host::signatureOf(parameter.type)) + " " + parameter.name;
        }
        text += "Signal `" + declared.name + "(" + arguments +
                ")`, to the object's creator: " + declared.summary + "\n\n";
    }
    return text;
}

} // namespace

std::string classReference(const PublicClass& publicClass) {
    std::string text = "### " + publicClass.name + "\n\n" + publicClass.summary +
                       "\n\nInterface `" + host::classInterface(publicClass.name) + "`, objects `" +
                       host::classPath(publicClass.name) + "/<n>`.\n\n";
    if (publicClass.members.empty()) {
        return text + "No members.\n\n";
    }
    text += "| member | use | type | changes signalled | meaning |\n|---|---|---|---|---|\n";
    for (const Member& member : publicClass.members) {
        text += "| `" + member.name + "` | " + accessOf(member) + " | " + cell(typeOf(member)) +
                " | " + (member.signalsChange ? "yes" : "no") + " | " + cell(member.summary) +
                " |\n";
    }
    return text + "\n" + signalsOf(publicClass) + example(publicClass);
}

std::string busReference(const ClassTable& table, const std::string& version) {
    std::string text = contractText(version);
    text +=
        "## kintarctl raw\n\n`kintarctl raw` carries out calls from standard input, one a line, "
        "over one connection:\n\n```\n";
    text += ctl::rawLanguage();
    text +=
        "```\n\nA line that fails is reported on standard error with its number and the error's "
        "name, and the\nnext one goes on (`--stop` ends there). Exit status: 0 all done, 1 a "
        "call was answered with an\nerror, 2 a line that is none, 3 no session bus. At the end "
        "of the input its objects are released,\nthe youngest first.\n\n## Classes\n\n"
        "Members stand in their fixed order; later versions add members at the end only.\n\n";
    for (const PublicClass& publicClass : table.classes()) {
        text += classReference(publicClass);
    }
    while (text.ends_with("\n\n")) {
        text.pop_back();
    }
    return text;
}

} // namespace kintar::docs
