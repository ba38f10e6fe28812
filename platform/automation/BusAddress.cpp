#include "platform/automation/BusAddress.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>

#include <systemd/sd-bus.h>

#include "platform/automation/PrivateBus.h"
#include "platform/desktop/Timers.h"
#include "platform/kernel/hostEnvironment.h"

namespace juntora::automation {
namespace {

/// For a bus that is stopped, or under a load that nothing can be done with.
constexpr std::int64_t CONNECT_MILLISECONDS = 10'000;
constexpr std::uint64_t MICROSECONDS = 1'000;

/// No call here waits inside the library, and none of its own limits is to come before the ones
/// that are watched here: an answer that is late since this process had no time is none that is
/// missing.
constexpr std::uint64_t NEVER_MICROSECONDS = 3'600'000'000;

/// The address that the session has told, or the place where its bus commonly is.
std::string addressOfSession() {
    std::string address = kernel::hostEnvironment("DBUS_SESSION_BUS_ADDRESS");
    if (!address.empty()) {
        return isPrivateBus(address) ? "" : address;
    }
    const std::string folder = kernel::hostEnvironment("XDG_RUNTIME_DIR");
    const std::string socket = folder + "/bus";
    struct stat status {};
    // A session that has ended may have left its socket.
    const bool isThere = !folder.empty() && stat(socket.c_str(), &status) == 0 &&
                         S_ISSOCK(status.st_mode) && status.st_uid == geteuid() &&
                         listensAt(socket);
    return isThere ? addressOfSocket(socket) : "";
}

/// Until the bus has given this connection its name.
bool awaitWelcome(sd_bus* bus) {
    const std::int64_t end = desktop::nowMilliseconds() + CONNECT_MILLISECONDS;
    while (sd_bus_is_ready(bus) == 0) {
        const std::int64_t left = end - desktop::nowMilliseconds();
        const int worked = left > 0 ? sd_bus_process(bus, nullptr) : -1;
        if (worked < 0) {
            return false;
        }
        if (worked == 0) {
            sd_bus_wait(bus, static_cast<std::uint64_t>(left) * MICROSECONDS);
        }
    }
    return sd_bus_is_ready(bus) > 0;
}

sd_bus* connectTo(const std::string& address) {
    sd_bus* bus = nullptr;
    if (sd_bus_new(&bus) >= 0 && sd_bus_set_address(bus, address.c_str()) >= 0 &&
        sd_bus_set_bus_client(bus, 1) >= 0 &&
        sd_bus_set_method_call_timeout(bus, NEVER_MICROSECONDS) >= 0 && sd_bus_start(bus) >= 0 &&
        awaitWelcome(bus)) {
        return bus;
    }
    sd_bus_close_unref(bus);
    return nullptr;
}

}  // namespace

sd_bus* connectToBus(std::string* why) {
    const std::string address = addressOfSession();
    if (!address.empty()) {
        sd_bus* bus = connectTo(address);
        if (bus == nullptr) {
            *why = "the session's message bus at \"" + address + "\" does not answer";
        }
        return bus;
    }
    // One that is just dying may still have its socket; the next look starts another.
    constexpr int TRIES = 3;
    for (int i = 0; i < TRIES; ++i) {
        const std::string own = addressOfPrivateBus(why);
        if (own.empty()) {
            return nullptr;
        }
        if (sd_bus* bus = connectTo(own)) {
            return bus;
        }
    }
    *why = "the desktop's message bus does not answer";
    return nullptr;
}

}  // namespace juntora::automation
