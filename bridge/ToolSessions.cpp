// Launches that the bridge takes, and the sessions that they start.
#include "bridge/CAppReg.h"
#include "bridge/CComLink.h"
#include "bridge/RequestTexts.h"
#include "bridge/guarded.h"
#include "common/CaseBlind.h"
#include "common/ScopedCount.h"
#include "hub/RecordText.h"
#include "hub/ipcDes.h"

namespace juntora {
namespace {

constexpr int PART_MODE = 2;  ///< Of the model editor's calls.

}  // namespace

// --- Launches ------------------------------------------------------------------------------------

struct CComLink::LaunchTarget {
    const char* baseName;  ///< Of the program.
    const char* toolKey;
    BridgeCode code;
    Window CComLink::*window;
    HWND CComLink::*client;
    int (CComLink::*makeWindow)();  ///< Null: where there is no window the hub starts the program.
};

bool CComLink::onToolLaunch(const IpcMessage* record) {
    static constexpr auto simulator = [](const char* name) {
        return LaunchTarget{name,
                            VOLTARA_KEY,
                            BRIDGE_START_VOLTARA,
                            &CComLink::m_pcwndDummyVoltara,
                            &CComLink::m_hVoltaraClient,
                            nullptr};
    };
    static constexpr auto modelar = [](const char* name) {
        return LaunchTarget{name,
                            MODELAR_KEY,
                            BRIDGE_START_MODELAR,
                            &CComLink::m_pcwndDummyModelar,
                            &CComLink::m_hModelarClient,
                            &CComLink::createModelarWindow};
    };
    static constexpr LaunchTarget TARGETS[] = {
        simulator("voltara"),
        simulator("voltaraad"),
        simulator("gatrel"),
        simulator("scopel"),
        {"tunara", TUNARA_KEY, BRIDGE_START_TUNARA, &CComLink::m_pcwndDummyTunara,
         &CComLink::m_hTunaraClient, nullptr},
        modelar("dorvane"),
        modelar("modelar"),
        {"wavend", WAVEND_KEY, BRIDGE_START_WAVEND, &CComLink::m_pcwndDummyWavend,
         &CComLink::m_hWavendClient, &CComLink::createWavendWindow},
    };
    const auto launch = readQuotedLaunch(RecordText(*record).view());
    if (!launch) {
        return false;
    }
    CString name;
    PathName(launch->program.c_str()).getBaseName(name);
    for (const LaunchTarget& target : TARGETS) {
        if (equalCaseBlind(static_cast<const char*>(name), target.baseName)) {
            return takeLaunch(target, launch->arguments, record->sender);
        }
    }
    return false;
}

bool CComLink::takeLaunch(const LaunchTarget& target, const std::string& arguments, HWND client) {
    const Window& window = this->*target.window;
    if (!window && target.makeWindow != nullptr) {
        (this->*target.makeWindow)();
    }
    if (!window) {
        return false;
    }
    if (!arguments.empty()) {
        CAppReg().setCmdLine(target.toolKey, (" " + arguments + " ").c_str());
    }
    this->*target.client = client;
    if (!window->postCode(target.code)) {
        this->*target.client = 0;
        return false;
    }
    return true;
}

// --- The simulator -------------------------------------------------------------------------------

void CComLink::startVoltaraSession() {
    if (!m_pcwndDummyVoltara || !m_pcwndDummyScopel) {
        createSimulatorWindows();
    }
    if (m_pVoltaraUser) {
        if (voltaraWindow() != 0) {
            if (const auto another = createWVoltaraUserInterface()) {
                another->start();  // Brings up the one that runs.
            }
        }
        return;
    }
    m_pVoltaraUser = createWVoltaraUserInterface();
    if (!m_pVoltaraUser) {
        return;
    }
    if (m_pVoltaraUser->start() != 0) {
        m_pVoltaraUser.reset();
        return;
    }
    addRow("Voltara", m_pcwndDummyVoltara);
    addRow("Scopel", m_pcwndDummyScopel);
    if (!m_pSimObj) {
        m_pSimObj = createWSimObjInterface();
    }
    if (!m_pIpcLink) {
        connectIpcLink();
    }
}

void CComLink::endVoltaraSession() {
    if (!m_pVoltaraUser) {
        return;
    }
    removeRows(m_pcwndDummyVoltara);
    removeRows(m_pcwndDummyScopel);
    // Before the calls below: a launch that comes while they wait sets it anew.
    m_hVoltaraClient = 0;
    m_pVoltaraUser.reset();
    if (m_pSimObj) {
        guarded([this] { m_pSimObj->setNotify(nullptr, 0, nullptr); });
        m_pSimObj.reset();
    }
    m_pLinkWatch.reset();
    if (m_pIpcLink) {
        if (m_pLinkSink != nullptr) {
            guarded([this] { m_pIpcLink->unadvise(m_lLinkCookie); });
            m_pLinkSink = nullptr;
        }
        m_pIpcLink.reset();
    }
}

// --- Tunara --------------------------------------------------------------------------------------

void CComLink::startTunaraSession() {
    if (!m_pcwndDummyTunara) {
        createTunaraWindow();
    }
    if (!m_pTunara) {
        m_pTunara = createWTunaraInterface();
        if (m_pTunara) {
            openTunaraFile("");
            addRow("Tunara", m_pcwndDummyTunara);
        }
    } else if (tunaraWindow() != 0) {
        openTunaraFile("");
    }
}

void CComLink::openTunaraFile(const std::string& file) {
    m_strTunaraFile = file;
    if (m_pTunara) {
        m_pTunara->setNotify(nullptr, 0, nullptr);
        m_pTunara->openFile(file.c_str(), file.c_str());
        m_pTunara->setNotify(&onTunaraNotify, 0, this);
    }
}

void CComLink::endTunaraSession() {
    if (m_pTunara) {
        removeRows(m_pcwndDummyTunara);
        m_pTunara.reset();
        m_hTunaraClient = 0;
    }
}

int CComLink::onTunaraRequest(int opcode, const IpcMessage* record) {
    if (!m_pTunara || !m_pcwndDummyTunara || opcode != IPC_COMMAND) {
        return 0;
    }
    m_hTunaraClient = record->sender;
    const std::vector<std::string> tokens = tokensOf(takeText(*record), "\n");
    const bool isOpen = tokens.size() >= 2 && equalCaseBlind(tokens[0], "File Open");
    return isOpen ? m_pcwndDummyTunara->postText(BRIDGE_OPEN_TUNARA, tokens[1]) : 0;
}

void CComLink::onTunaraNotify(int code, void* context) {
    constexpr int PARAMETERS_CHANGED = 1;
    constexpr int ENDS = 2;
    auto& link = *static_cast<CComLink*>(context);
    if (link.m_pHub == nullptr) {
        return;
    }
    const ScopedCount calling(link.m_nCalls);
    if (code == ENDS && link.m_hTunaraClient != 0 && link.m_pcwndDummyTunara) {
        link.m_pcwndDummyTunara->postCode(BRIDGE_END,
                                          reinterpret_cast<LPARAM>(link.m_pcwndDummyTunara.get()));
    } else if (code == PARAMETERS_CHANGED) {
        const std::string text = "OPTPARAM " + quoted(link.m_strTunaraFile);
        link.m_pHub->sendRequestAs(link.tunaraWindow(), IPC_COMMAND, text.c_str(),
                                   link.m_hTunaraClient);
    }
}

// --- The two editors -----------------------------------------------------------------------------

void CComLink::startModelarSession() {
    if (!m_pcwndDummyModelar) {
        createModelarWindow();
    }
    m_pModelar = createWSketchelModelarInterface();
    if (m_pModelar && m_pModelar->start() == 0) {
        addRow("Dorvane", m_pcwndDummyModelar);
    }
    m_pModelar.reset();
}

void CComLink::startWavendSession() {
    if (!m_pcwndDummyWavend) {
        createWavendWindow();
    }
    m_pWavend = createWSketchelWavendInterface();
    if (m_pWavend && m_pWavend->start() == 0) {
        addRow("Wavend", m_pcwndDummyWavend);
    }
    m_pWavend.reset();
}

void CComLink::endModelarSession() {
    removeRows(m_pcwndDummyModelar);
    m_hModelarClient = 0;
    m_pModelar.reset();
}

void CComLink::endWavendSession() {
    removeRows(m_pcwndDummyWavend);
    m_hWavendClient = 0;
    m_pWavend.reset();
}

int CComLink::onDorvaneRequest(int opcode, const IpcMessage* record) {
    if (!m_pcwndDummyModelar) {
        createModelarWindow();
    }
    const bool isTaken = m_pcwndDummyModelar && opcode == IPC_COMMAND;
    return isTaken ? m_pcwndDummyModelar->postText(BRIDGE_MODELAR, takeText(*record)) : 0;
}

int CComLink::onWavendRequest(int opcode, const IpcMessage* record) {
    if (!m_pcwndDummyWavend) {
        createWavendWindow();
    }
    const bool isTaken = m_pcwndDummyWavend && opcode == IPC_COMMAND;
    return isTaken ? m_pcwndDummyWavend->postText(BRIDGE_WAVEND, takeText(*record)) : 0;
}

void CComLink::modelarCommand(const std::string& text) {
    m_pModelar = createWSketchelModelarInterface();
    if (!m_pModelar) {
        return;
    }
    const std::vector<std::string> tokens = tokensOf(text, "\n");
    const auto is = [&](const char* command, std::size_t needed) {
        return tokens.size() >= needed && equalCaseBlind(tokens[0], command);
    };
    if (is("File OpenLib", 2)) {
        m_pModelar->openLibrary(tokens[1].c_str());
    } else if (is("File SaveAsLib", 2)) {
        m_pModelar->saveLibraryAs(tokens[1].c_str());
    } else if (is("Part Get_Part", 2)) {
        m_pModelar->getPart(tokens[1].c_str(), PART_MODE);
    } else if (is("Part Create_Part", 2)) {
        m_pModelar->createPart(tokens[1].c_str(), PART_MODE);
    } else if (is("Part Copy_Part", 4)) {
        m_pModelar->copyPart(tokens[2].c_str(), tokens[3].c_str(), tokens[1].c_str(), PART_MODE);
    }
    m_pModelar.reset();
}

void CComLink::wavendCommand(const std::string& text) {
    m_pWavend = createWSketchelWavendInterface();
    if (m_pWavend) {
        m_pWavend->command(text.c_str());
    }
    m_pWavend.reset();
}

}  // namespace juntora
