#include "platform/automation/ClassStart.h"

#include <algorithm>
#include <optional>

#include "platform/automation/NameWatch.h"
#include "platform/desktop/Timers.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora::automation {
namespace {

/// How often is looked whether the program has ended.
constexpr std::int64_t LOOK_MILLISECONDS = 50;

/// The switch by which a program knows that it was started for the sake of an object.
constexpr char EMBEDDING[] = " -Embedding";

/// Whether somebody offers a class.
class OfferWatch {
public:
    OfferWatch(Bus& bus, const std::string& busName)
        : m_bus(bus), m_watch(bus, busName, [this](bool hasOwner) { m_isOffered = hasOwner; }) {}

    bool isOffered() const { return m_isOffered == true; }
    /// Waits until the bus has told for the first time.
    HRESULT awaitWord() {
        const bool isTold =
            m_bus.waitUntil([this] { return m_isOffered.has_value(); }, START_MILLISECONDS);
        return isTold ? S_OK : m_bus.isOpen() ? RPC_E_TIMEOUT : RPC_E_DISCONNECTED;
    }

private:
    Bus& m_bus;
    std::optional<bool> m_isOffered;
    NameWatch m_watch;
};

HRESULT awaitOffer(Bus& bus, const OfferWatch& offer, HANDLE process) {
    const std::int64_t end = desktop::nowMilliseconds() + START_MILLISECONDS;
    for (std::int64_t left = START_MILLISECONDS; left > 0;
         left = end - desktop::nowMilliseconds()) {
        const auto step = static_cast<DWORD>(std::min(left, LOOK_MILLISECONDS));
        if (bus.waitUntil([&] { return offer.isOffered(); }, step)) {
            return S_OK;
        }
        if (!bus.isOpen()) {
            return RPC_E_DISCONNECTED;
        }
        if (WaitForSingleObject(process, 0) == WAIT_OBJECT_0) {
            return CO_E_SERVER_EXEC_FAILURE;
        }
    }
    return CO_E_SERVER_START_TIMEOUT;
}

}  // namespace

HRESULT ensureOffered(Bus& bus, const KnownClass& known) {
    OfferWatch offer(bus, known.busName);
    HRESULT result = offer.awaitWord();
    if (result < 0 || offer.isOffered()) {
        return result;
    }
    PROCESS_INFORMATION process{};
    if (known.program.empty() ||
        !CreateProcessA((known.program + EMBEDDING).c_str(), nullptr, nullptr, &process)) {
        return known.program.empty() ? REGDB_E_CLASSNOTREG : CO_E_APPNOTFOUND;
    }
    result = awaitOffer(bus, offer, process.hProcess);
    CloseHandle(process.hProcess);
    if (result == CO_E_SERVER_EXEC_FAILURE) {
        // It may have found another that serves the class, of which the bus has not told yet.
        OfferWatch another(bus, known.busName);
        result = another.awaitWord() >= 0 && another.isOffered() ? S_OK : result;
    }
    return result;
}

}  // namespace juntora::automation
