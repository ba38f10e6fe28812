#include "tests/screen/Panel.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <memory>
#include <mutex>

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

namespace juntora::test {

/// What the thread serves.
struct Panel::Service {
    std::string address;
    std::atomic<bool> hasEnded{false};
    std::atomic<bool> isDark{false};
    bool isTold = false;  ///< As the last signal said.
    std::promise<bool> isServing;
    std::mutex mutex;
    std::string item;  ///< The bus name of the program that has put an icon into the tray.

    void run();
};

namespace {

constexpr char WATCHER[] = "org.kde.StatusNotifierWatcher";
constexpr char PORTAL[] = "org.freedesktop.portal.Desktop";
constexpr char PORTAL_PATH[] = "/org/freedesktop/portal/desktop";
constexpr char SETTINGS[] = "org.freedesktop.portal.Settings";
constexpr char GROUP[] = "org.freedesktop.appearance";
constexpr char KEY[] = "color-scheme";
constexpr std::uint64_t LOOK_MICROSECONDS = 10'000;

int registerItem(sd_bus_message* message, void* context, sd_bus_error*) {
    const char* name = "";
    sd_bus_message_read(message, "s", &name);
    auto& service = *static_cast<Panel::Service*>(context);
    const std::lock_guard guard(service.mutex);
    service.item = name;
    return sd_bus_reply_method_return(message, "");
}

int isHostThere(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                sd_bus_error*) {
    return sd_bus_message_append(reply, "b", 1);
}

int readSetting(sd_bus_message* message, void* context, sd_bus_error*) {
    auto& service = *static_cast<Panel::Service*>(context);
    service.isTold = service.isDark;
    return sd_bus_reply_method_return(message, "v", "v", "u", service.isTold ? 1U : 0U);
}

constexpr std::array<sd_bus_vtable, 4> TRAY_TABLE{{
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", registerItem, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", isHostThere, 0, 0),
    SD_BUS_VTABLE_END,
}};

constexpr std::array<sd_bus_vtable, 4> SETTINGS_TABLE{{
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Read", "ss", "v", readSetting, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_SIGNAL("SettingChanged", "ssv", 0),
    SD_BUS_VTABLE_END,
}};

}  // namespace

void Panel::Service::run() {
    sd_bus* bus = nullptr;
    sd_bus_new(&bus);
    sd_bus_set_address(bus, address.c_str());
    sd_bus_set_bus_client(bus, 1);
    sd_bus_start(bus);
    sd_bus_add_object_vtable(bus, nullptr, "/StatusNotifierWatcher", WATCHER, TRAY_TABLE.data(),
                             this);
    sd_bus_add_object_vtable(bus, nullptr, PORTAL_PATH, SETTINGS, SETTINGS_TABLE.data(), this);
    isServing.set_value(sd_bus_request_name(bus, WATCHER, 0) >= 0 &&
                        sd_bus_request_name(bus, PORTAL, 0) >= 0);
    while (!hasEnded && sd_bus_is_open(bus) > 0) {
        if (isTold != isDark) {
            isTold = isDark;
            sd_bus_emit_signal(bus, PORTAL_PATH, SETTINGS, "SettingChanged", "ssv", GROUP, KEY, "u",
                               isTold ? 1U : 0U);
        }
        if (sd_bus_process(bus, nullptr) == 0) {
            sd_bus_wait(bus, LOOK_MICROSECONDS);
        }
    }
    sd_bus_close_unref(bus);
}

Panel::Panel(const std::string& folder) : m_bus(folder), m_service(std::make_unique<Service>()) {
    m_service->address = m_bus.address();
    m_thread = std::thread([this] { m_service->run(); });
    EXPECT_TRUE(m_service->isServing.get_future().get()) << "no bus came up";
}

Panel::~Panel() {
    m_service->hasEnded = true;
    m_thread.join();
}

void Panel::preferDark(bool isDark) { m_service->isDark = isDark; }

std::string Panel::call(const std::string& member, std::vector<std::string> arguments) const {
    std::string item;
    {
        const std::lock_guard guard(m_service->mutex);
        item = m_service->item;
    }
    if (item.empty()) {
        return "";
    }
    std::vector<std::string> words{"--bus=" + address(), "--print-reply", "--dest=" + item,
                                   "/MenuBar", "com.canonical.dbusmenu." + member};
    words.insert(words.end(), arguments.begin(), arguments.end());
    ChildProcess tool("/usr/bin/dbus-send", std::move(words), {{}, "", true});
    tool.wait();
    return tool.readAll(ChildProcess::Milliseconds(0));
}

std::string Panel::menu() const {
    return call("GetLayout", {"int32:0", "int32:-1", "array:string:"});
}

bool Panel::choose(const std::string& label) const {
    const std::string NUMBER = "int32 ";
    const std::string items = menu();
    const auto text = items.find('"' + label + '"');
    const auto number = text == items.npos ? text : items.rfind(NUMBER, text);
    if (number == items.npos) {
        return false;
    }
    const int item = std::atoi(items.c_str() + number + NUMBER.size());
    call("Event",
         {"int32:" + std::to_string(item), "string:clicked", "variant:string:", "uint32:0"});
    return true;
}

}  // namespace juntora::test
