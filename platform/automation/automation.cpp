// The one runtime of a process.
#include "platform/automation/automation.h"

#include <cstdio>
#include <memory>
#include <utility>

#include "platform/automation/ClassKeys.h"
#include "platform/automation/ClassNames.h"
#include "platform/automation/ClassStart.h"
#include "platform/automation/NameWatch.h"
#include "platform/automation/Objects.h"
#include "platform/automation/ReceivedValues.h"
#include "platform/automation/RemoteObject.h"
#include "platform/automation/Server.h"
#include "platform/automation/Services.h"
#include "platform/automation/protocol.h"
#include "platform/messages.h"

namespace juntora {
namespace automation {
namespace {

/// Bus, objects and server of the automation thread.
struct Runtime {
    std::unique_ptr<Bus> bus;
    std::unique_ptr<Objects> objects;
    std::unique_ptr<Server> server;
};

/// Stays until the process ends: objects may call out of static destructors.
Runtime* g_runtime = nullptr;

void tellOfEnd() {
    std::fputs(
        "juntora: the message bus has ended, so no program can create or call this one's objects "
        "any more. Start the program again once there is a bus.\n",
        stderr);
    g_runtime->objects->releaseEverything();
}

/// What a failed look into the registry means to a caller; `absent` where nothing stands there.
HRESULT resultOf(DWORD error, HRESULT absent) {
    return error == ERROR_FILE_NOT_FOUND ? absent : HRESULT_FROM_WIN32(error);
}

HRESULT find(const GUID& classId, KnownClass* known) {
    const std::string path = "CLSID\\" + TextOfGuid(classId);
    std::string programId;
    if (const DWORD error = readClassText(path + "\\ProgID", &programId)) {
        return resultOf(error, REGDB_E_CLASSNOTREG);
    }
    // A class without a program may be offered all the same.
    const DWORD error = readClassText(path + "\\LocalServer32", &known->program);
    known->busName = ownNameOfClass(programId);
    known->path = pathOfClass(programId);
    return known->busName.empty() ? REGDB_E_CLASSNOTREG : resultOf(error, S_OK);
}

HRESULT makeInstance(const KnownClass& known, IDispatch** out) {
    Bus& bus = *g_runtime->bus;
    HRESULT result = ensureOffered(bus, known);
    if (result < 0) {
        return result;
    }
    const Message reply =
        bus.call(bus.newCall(known.busName, known.path, CLASS_INTERFACE, "CreateInstance"),
                 START_MILLISECONDS, &result);
    if (!reply) {
        return result;
    }
    ReceivedValues made(reply.get(), *g_runtime->objects);
    const VARIANT object = made.size() == 1 ? made.take(0) : VARIANT();
    *out = std::holds_alternative<IDispatch*>(object) ? std::get<IDispatch*>(object) : nullptr;
    return *out != nullptr ? S_OK : E_FAIL;
}

}  // namespace

void reloadServices() {
    if (g_runtime != nullptr) {
        const Bus& bus = *g_runtime->bus;
        bus.send(bus.newCall(DAEMON_NAME, DAEMON_PATH, DAEMON_NAME, "ReloadConfig"));
    }
}

}  // namespace automation

bool StartAutomation(std::string* why) {
    using namespace automation;
    if (g_runtime != nullptr) {
        return true;
    }
    auto runtime = std::make_unique<Runtime>();
    // None of these comes before the thread's next look at its messages.
    runtime->bus = Bus::open(
        {.called = [](const Message& call) { g_runtime->server->answer(call); },
         .answeredLate =
             [](const Message& answer) { ReceivedValues(answer.get(), *g_runtime->objects); },
         .ended = &tellOfEnd},
        why);
    if (!runtime->bus) {
        return false;
    }
    runtime->objects = std::make_unique<Objects>(*runtime->bus);
    runtime->server = std::make_unique<Server>(*runtime->bus, *runtime->objects);
    g_runtime = runtime.release();
    return true;
}

struct ObjectWatch::State {
    explicit State(std::function<void()> tell) : gone(std::move(tell)) {}

    std::function<void()> gone;
    std::unique_ptr<automation::NameWatch> watch;
};

ObjectWatch::ObjectWatch(const IDispatch* object, std::function<void()> gone)
    : m_state(std::make_unique<State>(std::move(gone))) {
    using namespace automation;
    if (const auto* remote = dynamic_cast<const RemoteObject*>(object)) {
        m_state->watch = std::make_unique<NameWatch>(
            *g_runtime->bus, remote->address().owner, [state = m_state.get()](bool isThere) {
                if (!isThere && state->gone) {
                    const auto tell = std::exchange(state->gone, nullptr);
                    tell();  // Which may end the watch.
                }
            });
    }
}

ObjectWatch::~ObjectWatch() = default;

void DisconnectObject(const IDispatch* object) {
    if (automation::g_runtime != nullptr) {
        automation::g_runtime->objects->disconnect(object);
    }
}

void RevokeClasses() {
    if (automation::g_runtime != nullptr) {
        automation::g_runtime->server->revokeAll();
    }
}

bool ServeClass(const ServedClass& served) {
    return automation::g_runtime != nullptr && automation::g_runtime->server->serve(served);
}

std::size_t ForeignReferences() {
    return automation::g_runtime == nullptr ? 0
                                            : automation::g_runtime->objects->foreignReferences();
}

HRESULT CreateObject(const GUID& classId, IDispatch** out) {
    using namespace automation;
    *out = nullptr;
    if (g_runtime == nullptr) {
        return CO_E_NOTINITIALIZED;
    }
    KnownClass known;
    if (const HRESULT found = find(classId, &known); found < 0) {
        return found;
    }
    // A program that ends just now, since nobody has wanted it any more, is started anew.
    constexpr int TRIES = 3;
    HRESULT result = RPC_E_DISCONNECTED;
    for (int i = 0; i < TRIES && result == RPC_E_DISCONNECTED && g_runtime->bus->isOpen(); ++i) {
        result = makeInstance(known, out);
    }
    return result;
}

HRESULT ClassOfProgram(const char* programId, GUID* classId) {
    std::string text;
    if (const DWORD error = automation::readClassText(std::string(programId) + "\\CLSID", &text)) {
        return automation::resultOf(error, CO_E_CLASSSTRING);
    }
    const auto found = GuidOfText(text);
    if (!found) {
        return CO_E_CLASSSTRING;
    }
    *classId = *found;
    return S_OK;
}

}  // namespace juntora
