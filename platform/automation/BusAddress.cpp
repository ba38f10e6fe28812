#include "platform/automation/BusAddress.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include <systemd/sd-bus.h>

#include "platform/automation/PrivateBus.h"

namespace juntora::automation {
namespace {

std::string fromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// The address that the session has told, or the place where its bus commonly is.
std::string addressOfSession() {
    std::string address = fromEnvironment("DBUS_SESSION_BUS_ADDRESS");
    if (!address.empty()) {
        return isPrivateBus(address) ? "" : address;
    }
    const std::string folder = fromEnvironment("XDG_RUNTIME_DIR");
    const std::string socket = folder + "/bus";
    struct stat status {};
    const bool isThere = !folder.empty() && stat(socket.c_str(), &status) == 0 &&
                         S_ISSOCK(status.st_mode) && status.st_uid == geteuid();
    return isThere ? "unix:path=" + socket : "";
}

sd_bus* connectTo(const std::string& address) {
    sd_bus* bus = nullptr;
    if (sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 &&
        sd_bus_set_bus_client(bus, 1) >= 0 && sd_bus_start(bus) >= 0) {
        const char* name = nullptr;
        if (sd_bus_get_unique_name(bus, &name) >= 0) {
            return bus;
        }
    }
    sd_bus_close_unref(bus);
    return nullptr;
}

}  // namespace

sd_bus* connectToBus(std::string* why) {
    std::string address = addressOfSession();
    if (!address.empty()) {
        sd_bus* bus = connectTo(address);
        if (bus == nullptr) {
            *why = "the session's message bus at \"" + address + "\" does not answer";
        }
        return bus;
    }
    address = addressOfPrivateBus(why);
    sd_bus* bus = address.empty() ? nullptr : connectTo(address);
    if (bus == nullptr && !address.empty()) {
        *why = "the desktop's message bus does not answer";
    }
    return bus;
}

}  // namespace juntora::automation
