// The bridge's life: its stand-by windows, and what is posted to them.
#include "bridge/CComLink.h"

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

void CComLink::perform(int code, const BridgeValue& value) {
    const ScopedCount calling(m_nCalls);
    switch (code) {
        case BRIDGE_START_VOLTARA:
            return startVoltaraSession();
        case BRIDGE_START_TUNARA:
            return startTunaraSession();
        case BRIDGE_START_MODELAR:
            return startModelarSession();
        case BRIDGE_START_WAVEND:
            return startWavendSession();
        case BRIDGE_END:
            return endSessionOf(value.number);
        case BRIDGE_CLOSED:
            return onWindowClosed(static_cast<HWND>(value.number));
        default:
            break;
    }
    if (code == BRIDGE_CHANGE && value.change != nullptr) {
        onChange(*value.change);
    } else if (value.text != nullptr) {
        performText(code, *value.text);
    }
}

void CComLink::performText(int code, const std::string& text) {
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
void CComLink::endSessionOf(LPARAM window) {
    const auto isOf = [window](const Window& own) {
        return own && reinterpret_cast<LPARAM>(own.get()) == window;
    };
    if (isOf(m_pcwndDummyVoltara)) {
        endVoltaraSession();
    } else if (isOf(m_pcwndDummyTunara)) {
        endTunaraSession();
    } else if (isOf(m_pcwndDummyModelar)) {
        endModelarSession();
    } else if (isOf(m_pcwndDummyWavend)) {
        endWavendSession();
    }
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
