// The bridge's life: its stand-by windows, and what is posted to them.
#include "bridge/CComLink.h"

#include <algorithm>
#include <utility>

#include "bridge/CAppReg.h"
#include "common/ScopedCount.h"
#include "hub/ipcDes.h"
#include "platform/desktop/window.h"

namespace juntora {

CComLink::CComLink(ipcDes* hub) : m_pHub(hub) { EnableAutomation(); }

CComLink::~CComLink() {
    endVoltaraSession();
    endTunaraSession();
    endModelarSession();
    endWavendSession();
    for (Window* window : {&m_pcwndDummyVoltara, &m_pcwndDummyScopel, &m_pcwndDummyTunara,
                           &m_pcwndDummyModelar, &m_pcwndDummyWavend}) {
        destroyWindow(window);
    }
    CAppReg registry;
    for (const char* key : {VOLTARA_KEY, MODELAR_KEY, WAVEND_KEY, TUNARA_KEY}) {
        registry.clearCmdLine(key);
    }
}

int CComLink::createAllWindows() {
    return createSimulatorWindows() != 0 && createTunaraWindow() != 0 &&
                   createModelarWindow() != 0 && createWavendWindow() != 0
               ? 1
               : 0;
}

int CComLink::createWindow(Window* window, const char* caption, int id) {
    *window = std::make_unique<CComInterfaceWnd>(this);
    if (!(*window)->Create(caption, id)) {
        window->reset();
    }
    return *window ? 1 : 0;
}

void CComLink::destroyWindow(Window* window) {
    if (*window) {
        (*window)->DestroyWindow();
        window->reset();
    }
}

int CComLink::createSimulatorWindows() {
    if (m_pcwndDummyVoltara) {
        endVoltaraSession();
        destroyWindow(&m_pcwndDummyVoltara);
    }
    destroyWindow(&m_pcwndDummyScopel);
    return createWindow(&m_pcwndDummyVoltara, "m_pcwndDummyVoltara", 1011) != 0
               ? createWindow(&m_pcwndDummyScopel, "m_pcwndDummyScopel", 1013)
               : 0;
}

int CComLink::createTunaraWindow() {
    if (m_pcwndDummyTunara) {
        endTunaraSession();
        destroyWindow(&m_pcwndDummyTunara);
    }
    return createWindow(&m_pcwndDummyTunara, "m_pcwndDummyTunara", 1012);
}

int CComLink::createModelarWindow() {
    if (m_pcwndDummyModelar) {
        endModelarSession();
        destroyWindow(&m_pcwndDummyModelar);
    }
    return createWindow(&m_pcwndDummyModelar, "m_pcwndDummyModelar", 1015);
}

int CComLink::createWavendWindow() {
    if (m_pcwndDummyWavend) {
        endWavendSession();
        destroyWindow(&m_pcwndDummyWavend);
    }
    return createWindow(&m_pcwndDummyWavend, "m_pcwndDummyWavend", 1014);
}

CComInterfaceWnd* CComLink::firstWindow() const {
    for (const Window* window :
         {&m_pcwndDummyVoltara, &m_pcwndDummyTunara, &m_pcwndDummyModelar, &m_pcwndDummyWavend}) {
        if (*window) {
            return window->get();
        }
    }
    return nullptr;
}

void CComLink::addRow(const char* name, const Window& window) {
    if (m_pHub != nullptr && window) {
        m_pHub->addToolRow(name, window->m_hWnd);
    }
}

void CComLink::removeRows(const Window& window) {
    if (m_pHub != nullptr && window) {
        m_pHub->removeWindowRows(window->m_hWnd);
    }
}

void CComLink::perform(BridgeCall call) {
    m_waiting.push_back(std::move(call));
    if (m_isCarryingOut) {
        return;
    }
    const ScopedCount calling(m_nCalls);
    m_isCarryingOut = true;
    while (!m_waiting.empty()) {
        const BridgeCall next = std::move(m_waiting.front());
        m_waiting.pop_front();
        carryOut(next);
    }
    m_isCarryingOut = false;
}

void CComLink::carryOut(const BridgeCall& call) {
    switch (call.code) {
        case BRIDGE_START_VOLTARA:
            return startVoltaraSession();
        case BRIDGE_START_TUNARA:
            return startTunaraSession();
        case BRIDGE_START_MODELAR:
            return startModelarSession();
        case BRIDGE_START_WAVEND:
            return startWavendSession();
        case BRIDGE_END:
            return endSessionOf(call.number);
        case BRIDGE_CLOSED:
            closeLater(static_cast<HWND>(call.number));
            // With the first window that goes, the codes for the others that were posted to it do.
            for (const HWND window : std::exchange(m_closing, {})) {
                onWindowClosed(window);
            }
            return;
        default:
            break;
    }
    if (call.code == BRIDGE_CHANGE && call.change) {
        onChange(*call.change);
    } else if (call.text) {
        carryOutText(call.code, *call.text);
    }
}

void CComLink::closeLater(HWND window) {
    if (std::ranges::find(m_closing, window) == m_closing.end()) {
        m_closing.push_back(window);
    }
}

void CComLink::carryOutText(int code, const std::string& text) {
    switch (code) {
        case BRIDGE_OPEN_PROFILE:
            return openProfile(text);
        case BRIDGE_OPEN_TUNARA:
            return openTunaraFile(text);
        case BRIDGE_SCOPEL:
            return forwardToScopel(text);
        case BRIDGE_MODELAR:
            return modelarCommand(text);
        case BRIDGE_WAVEND:
            return wavendCommand(text);
        default:
            return;
    }
}

/// By the address of the window, which is never looked behind: it may be anybody's invention.
void CComLink::endSessionOf(LPARAM value) {
    const LPARAM window = value & ~ENDS_WITH_CLIENT;
    const auto isDue = [&](const Window& own, HWND client) {
        return own && reinterpret_cast<LPARAM>(own.get()) == window &&
               (window == value || hasClientLeft(client));
    };
    if (isDue(m_pcwndDummyVoltara, m_hVoltaraClient)) {
        endVoltaraSession();
    } else if (isDue(m_pcwndDummyTunara, m_hTunaraClient)) {
        endTunaraSession();
    } else if (isDue(m_pcwndDummyModelar, m_hModelarClient)) {
        endModelarSession();
    } else if (isDue(m_pcwndDummyWavend, m_hWavendClient)) {
        endWavendSession();
    }
}

/// A session that another tool has asked for meanwhile goes on for that one.
bool CComLink::hasClientLeft(HWND client) const {
    return m_pHub == nullptr || !m_pHub->hasTool(client);
}

void CComLink::onWindowClosed(HWND window) {
    const auto isOf = [window](const Window& own) {
        return own && window != 0 && own->m_hWnd == window;
    };
    if (isOf(m_pcwndDummyVoltara) || isOf(m_pcwndDummyScopel)) {
        endVoltaraSession();
        destroyWindow(&m_pcwndDummyVoltara);
        destroyWindow(&m_pcwndDummyScopel);
    } else if (isOf(m_pcwndDummyTunara)) {
        endTunaraSession();
        destroyWindow(&m_pcwndDummyTunara);
    } else if (isOf(m_pcwndDummyModelar)) {
        endModelarSession();
        destroyWindow(&m_pcwndDummyModelar);
    } else if (isOf(m_pcwndDummyWavend)) {
        endWavendSession();
        destroyWindow(&m_pcwndDummyWavend);
    }
}

Session CComLink::sessionOf(const CComInterfaceWnd& window) const {
    const auto runsIf = [](bool runs) { return runs ? SESSION_RUNS : SESSION_NONE; };
    const auto is = [&](const Window& own) { return own.get() == &window; };
    if (is(m_pcwndDummyVoltara) || is(m_pcwndDummyScopel)) {
        const SessionState linked = m_pLinkSink != nullptr ? SESSION_SUBSCRIBED : SESSION_CONNECTED;
        return {m_pVoltaraUser && m_pIpcLink ? linked : runsIf(m_pVoltaraUser != nullptr),
                m_hVoltaraClient};
    }
    if (is(m_pcwndDummyTunara)) {
        return {runsIf(m_pTunara != nullptr), m_hTunaraClient};
    }
    if (is(m_pcwndDummyModelar)) {
        return {runsIf(dorvaneWindow() == window.m_hWnd), m_hModelarClient};
    }
    return {runsIf(wavendWindow() == window.m_hWnd), m_hWavendClient};
}

}  // namespace juntora
