#include "bench/Bus.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

#include <systemd/sd-bus.h>

namespace juntora::bench {
namespace {

constexpr char NAME[] = "bench.Service";
constexpr char PATH[] = "/bench";
constexpr char INTERFACE[] = "bench.Interface";

int onAlive(sd_bus_message* message, void*, sd_bus_error*) {
    std::uint32_t window = 0;
    sd_bus_message_read(message, "u", &window);
    return sd_bus_reply_method_return(message, "u", window != 0 ? 1U : 0U);
}

std::uint32_t g_received = 0;

int onRecord(sd_bus_message* message, void*, sd_bus_error*) {
    const char* text = nullptr;
    sd_bus_message_read(message, "s", &text);
    ++g_received;
    return 1;
}

int onReceived(sd_bus_message* message, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(message, "u", g_received);
}

constexpr std::array<sd_bus_vtable, 5> TABLE{{
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Alive", "u", "u", onAlive, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Record", "s", "", onRecord,
                  SD_BUS_VTABLE_UNPRIVILEGED | SD_BUS_VTABLE_METHOD_NO_REPLY),
    SD_BUS_METHOD("Received", "", "u", onReceived, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
}};

sd_bus* connectTo(const std::string& address) {
    sd_bus* bus = nullptr;
    if (sd_bus_new(&bus) < 0 || sd_bus_set_address(bus, address.c_str()) < 0 ||
        sd_bus_set_bus_client(bus, 1) < 0 || sd_bus_start(bus) < 0) {
        throw std::runtime_error("no connection to the private bus");
    }
    return bus;
}

sd_bus* connectDirect(int descriptor, bool isServer) {
    sd_bus* bus = nullptr;
    sd_bus_new(&bus);
    sd_bus_set_fd(bus, descriptor, descriptor);
    if (isServer) {
        sd_bus_set_server(bus, 1, SD_ID128_MAKE(1, 2, 3, 4, 5, 6, 7, 8, 9, a, b, c, d, e, f, 10));
    }
    if (sd_bus_start(bus) < 0) {
        throw std::runtime_error("no direct connection");
    }
    return bus;
}

[[noreturn]] void serve(const std::string& address, int direct, int ready) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sd_bus* bus = connectTo(address);
    sd_bus* peer = connectDirect(direct, true);
    sd_bus_add_object_vtable(bus, nullptr, PATH, INTERFACE, TABLE.data(), nullptr);
    sd_bus_add_object_vtable(peer, nullptr, PATH, INTERFACE, TABLE.data(), nullptr);
    sd_bus_request_name(bus, NAME, 0);
    [[maybe_unused]] const auto told = write(ready, "r", 1);
    for (;;) {
        const int worked = sd_bus_process(bus, nullptr) + sd_bus_process(peer, nullptr);
        if (worked <= 0) {
            std::array<pollfd, 2> waits{
                {{sd_bus_get_fd(bus), POLLIN, 0}, {sd_bus_get_fd(peer), POLLIN, 0}}};
            poll(waits.data(), waits.size(), -1);
        }
    }
}

std::uint32_t received(sd_bus* bus, const char* destination) {
    sd_bus_message* reply = nullptr;
    std::uint32_t count = 0;
    if (sd_bus_call_method(bus, destination, PATH, INTERFACE, "Received", nullptr, &reply, "") <
            0 ||
        sd_bus_message_read(reply, "u", &count) < 0) {
        throw std::runtime_error("the service does not answer");
    }
    sd_bus_message_unref(reply);
    return count;
}

}  // namespace

Bus::Bus(const std::string& folder) : m_daemon(folder) {
    const std::string& address = m_daemon.address();
    if (address.empty()) {
        throw std::runtime_error("dbus-daemon does not start (script/bootstrap bench installs it)");
    }
    int pair[2];
    int ready[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0 || pipe(ready) != 0) {
        throw std::runtime_error("no sockets");
    }
    m_service = fork();
    if (m_service == 0) {
        close(pair[0]);
        serve(address, pair[1], ready[1]);
    }
    close(pair[1]);
    close(ready[1]);
    char byte = 0;
    if (read(ready[0], &byte, 1) != 1) {
        throw std::runtime_error("the service does not start");
    }
    close(ready[0]);
    m_bus = connectTo(address);
    m_direct = connectDirect(pair[0], false);
}

Bus::~Bus() {
    sd_bus_close_unref(m_bus);
    sd_bus_close_unref(m_direct);
    kill(m_service, SIGKILL);
    waitpid(m_service, nullptr, 0);
}

void Bus::call() {
    sd_bus_message* reply = nullptr;
    if (sd_bus_call_method(m_bus, NAME, PATH, INTERFACE, "Alive", nullptr, &reply, "u", 0x10001) <
        0) {
        throw std::runtime_error("the service does not answer");
    }
    sd_bus_message_unref(reply);
}

void Bus::oneWay(int count, bool direct) {
    sd_bus* bus = direct ? m_direct : m_bus;
    const char* destination = direct ? nullptr : NAME;
    const std::string text(900, 'x');
    const std::uint32_t before = received(bus, destination);
    for (int i = 0; i < count; ++i) {
        sd_bus_message* message = nullptr;
        sd_bus_message_new_method_call(bus, &message, destination, PATH, INTERFACE, "Record");
        sd_bus_message_append(message, "s", text.c_str());
        sd_bus_message_set_expect_reply(message, 0);
        sd_bus_send(bus, message, nullptr);
        sd_bus_message_unref(message);
        if (i % 64 == 63) {
            sd_bus_flush(bus);
        }
    }
    sd_bus_flush(bus);
    while (received(bus, destination) - before < static_cast<std::uint32_t>(count)) {
    }
}

}  // namespace juntora::bench
