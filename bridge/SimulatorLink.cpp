// What the simulator reports, and what it is told.
#include "bridge/CComLink.h"
#include "bridge/RequestTexts.h"
#include "bridge/guarded.h"
#include "bridge/toolClasses.h"
#include "common/PathName.h"
#include "common/ScopedCount.h"
#include "hub/ipcDes.h"

namespace juntora {
namespace {

/// What the link's changes mean here. What is in between concerns the simulator alone.
enum Change : LONG {
    CHANGE_RUN_BEGINS = 3,
    CHANGE_DATA_COMES = 4,
    CHANGE_RUN_ENDS = 6,
    CHANGE_TRACES_WANTED = 7,
    CHANGE_RUN_FAILS = 8,
    CHANGE_SIMULATOR_ENDS = 9,
};

// The client's codes for the state of a run.
constexpr int STATUS_BEGUN = 0;
constexpr int STATUS_ENDED = 2;
constexpr int STATUS_FAILED = 3;

constexpr LONG EVERY_CHANGE = 65'535;
constexpr int BEGUN_AND_ENDED = 3;

constexpr int FAILED = -1;
constexpr int REFUSED = -2;

}  // namespace

const AFX_DISPMAP* CComLink::GetDispatchMap() const {
    static const AFX_DISPMAP_ENTRY entries[] = {
        DISP_FUNCTION<&CComLink::notifyChange>("notifyChange")};
    static const AFX_DISPMAP map("Voltara.JuntoraComLink", entries);
    return &map;
}

std::span<const GUID> CComLink::GetInterfaceMap() const {
    static constexpr GUID INTERFACES[] = {IID_ComLink};
    return INTERFACES;
}

int CComLink::connectIpcLink() {
    if (!m_pIpcLink) {
        auto link = std::make_unique<IVoltaraIpcLink>();
        bool isMade = false;
        guarded([&] { isMade = link->CreateDispatch(VOLTARA_LINK_PROGRAM_ID, nullptr); });
        if (!isMade) {
            return REFUSED;
        }
        m_pIpcLink = std::move(link);
        // A simulator that dies reports no end.
        m_pLinkWatch = std::make_unique<ObjectWatch>(
            m_pIpcLink->m_lpDispatch, [this] { notifyChange(CHANGE_SIMULATOR_ENDS); });
    }
    if (m_pLinkSink == nullptr) {
        adviseIpcLink();
    }
    return 0;
}

int CComLink::adviseIpcLink() {
    if (!m_pIpcLink) {
        return FAILED;
    }
    if (m_pLinkSink != nullptr) {
        return 0;
    }
    m_pLinkSink = GetIDispatch(false);
    if (m_pLinkSink != nullptr &&
        !guarded([this] { m_pIpcLink->advise(m_pLinkSink, EVERY_CHANGE, &m_lLinkCookie); })) {
        m_pLinkSink = nullptr;
        return REFUSED;
    }
    return 0;
}

void CComLink::notifyChange(LONG code) {
    if (!m_pcwndDummyVoltara) {
        return;
    }
    if (code == CHANGE_SIMULATOR_ENDS) {
        m_pcwndDummyVoltara->postCode(BRIDGE_END,
                                      reinterpret_cast<LPARAM>(m_pcwndDummyVoltara.get()));
        return;
    }
    if (!m_pIpcLink) {
        return;
    }
    const ScopedCount calling(m_nCalls);
    ChangeRecord change{code, "", ""};
    guarded([&] { change.dataFile = m_pIpcLink->getDataFile(); });
    guarded([&] { change.profileFile = m_pIpcLink->getProfileFile(); });
    if (m_pcwndDummyVoltara) {
        m_pcwndDummyVoltara->postChange(std::move(change));
    }
}

void CComLink::onChange(const ChangeRecord& change) {
    if (m_pHub == nullptr) {
        return;
    }
    const auto send = [&](HWND from, const char* command) {
        const std::string text = command + quoted(change.dataFile);
        m_pHub->sendRequestAs(from, IPC_COMMAND, text.c_str(), m_hVoltaraClient);
    };
    switch (change.code) {
        case CHANGE_RUN_BEGINS:
            return sendStatusOnce(change, STATUS_BEGUN);
        case CHANGE_RUN_ENDS:
            return sendStatusOnce(change, STATUS_ENDED);
        case CHANGE_RUN_FAILS:
            return sendStatusOnce(change, STATUS_FAILED);
        case CHANGE_DATA_COMES:
            if (m_pIpcLink) {
                m_bStatusSent = 0;
                send(voltaraWindow(), "StartScopelFile ");
            }
            return;
        case CHANGE_TRACES_WANTED:
            if (m_pIpcLink) {
                send(scopelWindow(), "OKtoAddTraces ");
            }
            return;
        default:
            return;
    }
}

/// The first since the last change 4.
void CComLink::sendStatusOnce(const ChangeRecord& change, int code) {
    if (m_bStatusSent == 0 && !change.profileFile.empty()) {
        m_bStatusSent = 1;
        m_pHub->sendStatusAs(voltaraWindow(), m_hVoltaraClient, quoted(change.profileFile).c_str(),
                             code);
    }
}

/// The way of a simulator without a link.
void CComLink::onSimObjNotify(unsigned char flags, void* context) {
    constexpr unsigned BEGUN = 1;
    constexpr unsigned ENDED = 2;
    auto* const link = static_cast<CComLink*>(context);
    if (link == nullptr || link->m_pIpcLink || link->m_pHub == nullptr ||
        (flags & (BEGUN | ENDED)) == 0) {
        return;
    }
    const ScopedCount calling(link->m_nCalls);
    const int code = (flags & BEGUN) != 0 ? STATUS_BEGUN : STATUS_ENDED;
    link->m_pHub->sendStatusAs(link->voltaraWindow(), link->m_hVoltaraClient,
                               link->m_strProfile.c_str(), code);
}

int CComLink::onVoltaraRequest(int opcode, const IpcMessage* record) {
    if (!m_pVoltaraUser || !m_pcwndDummyVoltara || opcode != IPC_COMMAND) {
        return 0;
    }
    m_hVoltaraClient = record->sender;
    const std::vector<std::string> tokens = tokensOf(takeText(*record), " \t");
    if (tokens.empty()) {
        return 0;
    }
    const PathName file(tokens[0].c_str());
    return m_pcwndDummyVoltara->postText(BRIDGE_OPEN_PROFILE, file.c_str());
}

void CComLink::openProfile(const std::string& path) {
    m_strProfile = path;
    if (m_pSimObj) {
        m_pSimObj->setNotify(nullptr, 0, nullptr);
        m_pSimObj->loadFile(path.c_str(), 1);
        m_pSimObj->setNotify(&onSimObjNotify, BEGUN_AND_ENDED, this);
    }
    if (m_pIpcLink && m_pLinkSink == nullptr) {
        adviseIpcLink();
    }
    if (m_pVoltaraUser) {
        m_pVoltaraUser->closeFile();
        m_pVoltaraUser->openFile(path.c_str());
        m_pVoltaraUser->afterOpen(0);
    }
}

int CComLink::onScopelRequest(int opcode, const IpcMessage* record) {
    if (!m_pVoltaraUser || !m_pcwndDummyVoltara) {
        return 0;
    }
    const std::string text = takeText(*record);  // In any case: it is answered as taken.
    if (opcode == IPC_COMMAND && m_pIpcLink) {
        m_pcwndDummyVoltara->postText(BRIDGE_SCOPEL, text);
    }
    return 1;
}

void CComLink::forwardToScopel(const std::string& text) {
    if (!m_pIpcLink) {
        return;
    }
    if (m_pLinkSink == nullptr) {
        adviseIpcLink();
    }
    guarded([&] { m_pIpcLink->scopelCommand(text.c_str()); });
}

void CComLink::clientGone(HWND window) {
    const auto endFor = [window](HWND client, const Window& own) {
        if (client != 0 && client == window && own) {
            own->postCode(BRIDGE_END, reinterpret_cast<LPARAM>(own.get()) | ENDS_WITH_CLIENT);
        }
    };
    endFor(m_hVoltaraClient, m_pcwndDummyVoltara);
    endFor(m_hTunaraClient, m_pcwndDummyTunara);
    endFor(m_hModelarClient, m_pcwndDummyModelar);
    endFor(m_hWavendClient, m_pcwndDummyWavend);
}

}  // namespace juntora
