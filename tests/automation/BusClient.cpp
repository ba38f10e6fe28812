#include "tests/automation/BusClient.h"

#include <algorithm>

#include "platform/automation/automation.h"

namespace juntora::test {
namespace {

constexpr char DAEMON[] = "org.freedesktop.DBus";

struct MessageEnd {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, MessageEnd>;

std::string pathOf(const std::string& programId) {
    std::string path = "/" + BusNameOfClass(programId);
    std::ranges::replace(path, '.', '/');
    return path;
}

}  // namespace

BusClient::BusClient(const std::string& address) {
    sd_bus* bus = nullptr;
    sd_bus_new(&bus);
    m_bus.reset(bus);
    sd_bus_set_address(bus, address.c_str());
    sd_bus_set_bus_client(bus, 1);
    sd_bus_start(bus);
}

std::string BusClient::name() const {
    const char* name = nullptr;
    return sd_bus_get_unique_name(m_bus.get(), &name) >= 0 ? name : "";
}

std::string BusClient::nameOf(const std::string& programId) {
    sd_bus_message* reply = nullptr;
    sd_bus_call_method(m_bus.get(), DAEMON, "/org/freedesktop/DBus", DAEMON, "GetNameOwner",
                       nullptr, &reply, "s", BusNameOfClass(programId).c_str());
    const Message kept(reply);
    const char* owner = nullptr;
    return reply != nullptr && sd_bus_message_read(reply, "s", &owner) > 0 ? owner : "";
}

std::string BusClient::create(const std::string& programId) {
    sd_bus_message* reply = nullptr;
    sd_bus_call_method(m_bus.get(), BusNameOfClass(programId).c_str(), pathOf(programId).c_str(),
                       "juntora.Class", "CreateInstance", nullptr, &reply, "");
    const Message kept(reply);
    const char* owner = nullptr;
    const char* path = nullptr;
    const bool isMade = reply != nullptr && sd_bus_message_read(reply, "(ss)", &owner, &path) > 0;
    return isMade ? path : "";
}

void BusClient::send(const std::string& programId, const std::string& path, const char* interface,
                     const char* member) {
    const std::string place = path.empty() ? pathOf(programId) : path;
    sd_bus_call_method_async(m_bus.get(), nullptr, BusNameOfClass(programId).c_str(), place.c_str(),
                             interface, member, nullptr, nullptr, "");
}

sd_bus_message* BusClient::newCall(const std::string& programId, const std::string& path,
                                   const char* interface, const char* member) {
    sd_bus_message* message = nullptr;
    sd_bus_message_new_method_call(m_bus.get(), &message, BusNameOfClass(programId).c_str(),
                                   (path.empty() ? pathOf(programId) : path).c_str(), interface,
                                   member);
    return message;
}

std::string BusClient::send(sd_bus_message* message) {
    const Message kept(message);
    sd_bus_error error{};
    sd_bus_message* reply = nullptr;
    sd_bus_call(m_bus.get(), message, 0, &error, &reply);
    const Message answer(reply);
    std::string name = error.name != nullptr ? error.name : "";
    sd_bus_error_free(&error);
    return name;
}

bool BusClient::share(const std::string& programId, const std::string& path,
                      const std::string& with) {
    return sd_bus_call_method(m_bus.get(), BusNameOfClass(programId).c_str(), path.c_str(),
                              "juntora.Object", "Share", nullptr, nullptr, "s", with.c_str()) >= 0;
}

unsigned BusClient::processOf(const std::string& name) {
    sd_bus_message* reply = nullptr;
    sd_bus_call_method(m_bus.get(), DAEMON, "/org/freedesktop/DBus", DAEMON,
                       "GetConnectionUnixProcessID", nullptr, &reply, "s", name.c_str());
    const Message kept(reply);
    unsigned process = 0;
    return reply != nullptr && sd_bus_message_read(reply, "u", &process) > 0 ? process : 0;
}

}  // namespace juntora::test
