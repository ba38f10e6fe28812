#include "platform/automation/Introspection.h"

#include <set>

#include "platform/automation/Message.h"
#include "platform/automation/protocol.h"

namespace juntora::automation {
namespace {

constexpr char HEAD[] =
    "<!DOCTYPE node PUBLIC \"-//freedesktop//DTD D-BUS Object Introspection 1.0//EN\"\n"
    "\"http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd\">\n<node>\n";

constexpr char CLASS_MEMBERS[] =
    "  <method name=\"CreateInstance\"><arg type=\"(ss)\" direction=\"out\"/></method>\n";

constexpr char OBJECT_MEMBERS[] =
    "  <method name=\"GetIDOfName\"><arg type=\"s\" direction=\"in\"/>"
    "<arg type=\"i\" direction=\"out\"/></method>\n"
    "  <method name=\"QueryInterface\"><arg type=\"s\" direction=\"in\"/>"
    "<arg type=\"b\" direction=\"out\"/></method>\n"
    "  <method name=\"Invoke\"><arg type=\"i\" direction=\"in\"/><arg type=\"u\" direction=\"in\"/>"
    "<arg type=\"av\" direction=\"in\"/><arg type=\"v\" direction=\"out\"/>"
    "<arg type=\"av\" direction=\"out\"/></method>\n"
    "  <method name=\"Share\"><arg type=\"s\" direction=\"in\"/></method>\n"
    "  <method name=\"Release\"/>\n";

std::string argument(VariantKind kind, const char* direction) {
    return std::string("<arg type=\"") + signatureOf(kind) + "\" direction=\"" + direction + "\"/>";
}

std::string interfaceOf(const std::string& name, const std::string& members) {
    return " <interface name=\"" + name + "\">\n" + members + " </interface>\n";
}

std::string plainMembers(const DispatchDescription& description) {
    std::string text;
    for (const DispatchMember& member : description.members) {
        text += "  <method name=\"" + member.name + "\">";
        for (const VariantKind parameter : member.parameters) {
            text += argument(parameter, "in");
        }
        if (member.result != VariantKind::EMPTY) {
            text += argument(member.result, "out");
        }
        text += "</method>\n";
    }
    return text;
}

}  // namespace

std::string introspectObject(const DispatchDescription& description, bool isClass) {
    return HEAD + interfaceOf(description.interfaceName, plainMembers(description)) +
           (isClass ? interfaceOf(CLASS_INTERFACE, CLASS_MEMBERS)
                    : interfaceOf(OBJECT_INTERFACE, OBJECT_MEMBERS)) +
           "</node>\n";
}

std::string introspectWay(const std::string& path, const std::vector<std::string>& paths) {
    const std::string folder = path == "/" ? path : path + "/";
    std::set<std::string> next;
    for (const std::string& whole : paths) {
        if (whole.starts_with(folder)) {
            next.insert(
                whole.substr(folder.size(), whole.find('/', folder.size()) - folder.size()));
        }
    }
    std::string text;
    for (const std::string& element : next) {
        text += " <node name=\"" + element + "\"/>\n";
    }
    return text.empty() ? text : HEAD + text + "</node>\n";
}

}  // namespace juntora::automation
