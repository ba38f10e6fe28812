#include "platform/automation/ClassStart.h"

#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora::automation {
namespace {

constexpr char DAEMON_NAME[] = "org.freedesktop.DBus";
constexpr char DAEMON_PATH[] = "/org/freedesktop/DBus";
constexpr DWORD STEP_MILLISECONDS = 50;

/// The switch by which a program knows that it was started for the sake of an object.
constexpr char EMBEDDING[] = " -Embedding";

bool hasOwner(Bus& bus, const std::string& name) {
    const Message question = bus.newCall(DAEMON_NAME, DAEMON_PATH, DAEMON_NAME, "NameHasOwner");
    HRESULT error = E_FAIL;
    int isOwned = 0;
    if (question) {
        sd_bus_message_append(question.get(), "s", name.c_str());
    }
    const Message answer = bus.call(question, CALL_MILLISECONDS, &error);
    return answer && sd_bus_message_read(answer.get(), "b", &isOwned) > 0 && isOwned != 0;
}

/// Word of a name's new owner, for as long as it lives.
class NameWatch {
public:
    NameWatch(Bus& bus, const std::string& name) {
        const std::string rule = std::string("type='signal',sender='") + DAEMON_NAME +
                                 "',member='NameOwnerChanged',arg0='" + name + "'";
        sd_bus_add_match(bus.handle(), &m_slot, rule.c_str(), &onChange, this);
    }
    ~NameWatch() { sd_bus_slot_unref(m_slot); }
    NameWatch(const NameWatch&) = delete;
    NameWatch& operator=(const NameWatch&) = delete;

    bool hasChanged() const { return m_hasChanged; }

private:
    static int onChange(sd_bus_message* message, void* self, sd_bus_error*) {
        const char* name = nullptr;
        const char* before = nullptr;
        const char* now = nullptr;
        if (sd_bus_message_read(message, "sss", &name, &before, &now) > 0 && *now != '\0') {
            static_cast<NameWatch*>(self)->m_hasChanged = true;
        }
        return 0;
    }

    sd_bus_slot* m_slot = nullptr;
    bool m_hasChanged = false;
};

HRESULT awaitOffer(Bus& bus, const NameWatch& watch, HANDLE process) {
    for (DWORD waited = 0; waited < START_MILLISECONDS; waited += STEP_MILLISECONDS) {
        if (bus.waitUntil([&] { return watch.hasChanged(); }, STEP_MILLISECONDS)) {
            return S_OK;
        }
        if (!bus.isOpen()) {
            return RPC_E_DISCONNECTED;
        }
        if (WaitForSingleObject(process, 0) == WAIT_OBJECT_0) {
            // It may have found another that serves the class, or have handed on its work.
            return watch.hasChanged() ? S_OK : CO_E_SERVER_EXEC_FAILURE;
        }
    }
    return CO_E_SERVER_START_TIMEOUT;
}

}  // namespace

HRESULT ensureOffered(Bus& bus, const KnownClass& known) {
    const NameWatch watch(bus, known.busName);
    if (hasOwner(bus, known.busName)) {
        return S_OK;
    }
    if (!bus.isOpen()) {
        return RPC_E_DISCONNECTED;
    }
    PROCESS_INFORMATION process{};
    if (known.program.empty() ||
        !CreateProcessA((known.program + EMBEDDING).c_str(), nullptr, nullptr, &process)) {
        return known.program.empty() ? REGDB_E_CLASSNOTREG : CO_E_APPNOTFOUND;
    }
    const HRESULT result = awaitOffer(bus, watch, process.hProcess);
    CloseHandle(process.hProcess);
    return result == CO_E_SERVER_EXEC_FAILURE && hasOwner(bus, known.busName) ? S_OK : result;
}

}  // namespace juntora::automation
