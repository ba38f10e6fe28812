#include "shell/CJuntoraApp.h"

#include <cstdio>

#include "bridge/CComLink.h"
#include "common/PerUserRegistration.h"
#include "framework/COleObjectFactory.h"
#include "framework/CWnd.h"
#include "ipc/IpcMessage.h"
#include "platform/kernel/process.h"
#include "shell/CJuntoraDlg.h"
#include "shell/CommandLine.h"
#include "shell/StartLock.h"
#include "shell/resources.h"

namespace juntora {
namespace {

bool registerWindowClass() {
    constexpr int ARROW = 32512;
    constexpr int WINDOW_COLOUR = 6;
    const WNDCLASSA hubClass{CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS,
                             AfxGetAfxWndProc(),
                             IDI_HUB,
                             ARROW,
                             WINDOW_COLOUR,
                             HUB_WINDOW_CLASS};
    return AfxRegisterClass(&hubClass) != 0;
}

}  // namespace

bool CJuntoraApp::InitInstance() {
    // Of two hubs that start at the same instant the second waits here until the first one's window
    // stands, and then finds it.
    StartLock startLock;
    if (FindWindowA(HUB_WINDOW_CLASS, HUB_WINDOW_TITLE) != 0) {
        return false;
    }
    if (startLock.HasTimedOut()) {
        std::fputs(
            "juntora: another hub has been starting for 10 s and is not ready yet, so this "
            "one ends. If that one hangs, end it and start the hub again.\n",
            stderr);
        m_nExitCode = 1;
        return false;
    }
    if (!registerWindowClass()) {
        return false;
    }
    RegisterHubResources();
    setBridgeMaker(&CComLink::create);
    if (!AfxOleInit()) {
        startLock.Release();  // The box may stand for long.
        AfxMessageBox(IDS_NO_AUTOMATION);
        m_nExitCode = 1;
        return false;
    }
    if (registerClasses()) {
        return false;  // That was all.
    }
    const bool isStartedByHand = !RunEmbedded() && !RunAutomated();
    AfxOleSetUserCtrl(true);
    m_nCmdShow = SW_HIDE;
    LeaveStartersPipes();

    CJuntoraDlg dialog(1, isStartedByHand ? 1 : 0, nullptr);
    dialog.SetStartLock(&startLock);
    m_pMainWnd = &dialog;
    m_nExitCode = dialog.DoModal() == IDCANCEL ? 0 : 1;
    m_pMainWnd = nullptr;
    return false;
}

/// At every start; whether this one was for nothing else.
bool CJuntoraApp::registerClasses() {
    PerUserRegistrationOn();
    if (!COleObjectFactory::RegisterAll()) {
        std::fputs("juntora: the message bus does not let it offer its class.\n", stderr);
    }
    const bool isRegistered = COleObjectFactory::UpdateRegistryAll(true);
    if (!isRegistered) {
        std::fputs(
            "juntora: its class could not be registered for other programs. The registry's "
            "file, or the folder dbus-1/services of the user's data, cannot be written, or "
            "the path of this program has a quote, a dollar sign or a backslash in it.\n",
            stderr);
    }
    if (m_lpCmdLine != nullptr && RemoveSwitch(m_lpCmdLine, "Regserver")) {
        m_nExitCode = isRegistered ? 0 : 1;
        return true;
    }
    PerUserRegistrationOff();
    return false;
}

const AFX_MSGMAP& CJuntoraApp::GetMessageMap() const {
    static const AFX_MSGMAP_ENTRY entries[] = {ON_COMMAND<&CJuntoraApp::OnHelp>(ID_HELP)};
    static const AFX_MSGMAP map{&CWinApp::GetMessageMap(), entries};
    return map;
}

}  // namespace juntora
