#include "shell/CJuntoraDlg.h"

#include <cstdio>

#include "common/ScopedCount.h"
#include "framework/COleObjectFactory.h"
#include "hub/CIpcMsgWnd.h"
#include "hub/ipcDes.h"
#include "platform/desktop/message.h"
#include "platform/dialog/dialog.h"
#include "platform/kernel/sync.h"
#include "shell/CAboutDlg.h"
#include "shell/CAppMonDlg.h"
#include "shell/Planchet.h"
#include "shell/StartLock.h"
#include "shell/registeredMessages.h"
#include "shell/resources.h"

namespace juntora {
namespace {

constexpr WPARAM SC_ABOUT = 16;
constexpr UINT SC_MASK = 0xFFF0;  ///< The low four bits are the system's.

}  // namespace

CJuntoraDlg::CJuntoraDlg(int showAllowed, int startPlanchet, CWnd* parent)
    : CDialog(IDD_HUB, parent),
      m_hIcon(IDI_HUB),
      m_bShowAllowed(showAllowed),
      m_bStartPlanchet(startPlanchet),
      m_strVersion(VERSION_TEXT) {}

CJuntoraDlg::~CJuntoraDlg() {
    m_pMonitor.reset();  // It works with the window below.
    m_pIpcWnd.reset();
}

BOOL CJuntoraDlg::OnInitDialog() {
    CDialog::OnInitDialog();
    // Visible from here on, so that the modal loop does not show it once more.
    ShowWindow(SW_SHOWMINNOACTIVE);
    prepareSystemMenu();
    SendMessageA(m_hWnd, WM_SETICON, 0, m_hIcon);
    if (!createHub()) {
        std::fprintf(stderr,
                     "juntora: the hub's windows could not be made (error %u), so it ends. The "
                     "desktop may be full: end some of its programs and start the hub again.\n",
                     GetLastError());
        EndDialog(-1);
        return 1;
    }
    const HWND next = GetWindow(m_hWnd, GW_HWNDNEXT);
    if (m_bStartPlanchet) {
        StartPlanchet(0);
    }
    if (next != 0 && !m_bShowAllowed) {
        SetForegroundWindow(next);
    }
    return 1;
}

void CJuntoraDlg::prepareSystemMenu() {
    SystemMenu* menu = GetSystemMenu(m_hWnd);
    CString about;
    if (about.LoadString(IDS_ABOUT_ITEM)) {
        AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
        AppendMenuA(menu, MF_STRING, SC_ABOUT, about);
    }
    EnableMenuItem(menu, SC_MAXIMIZE, MF_BYCOMMAND | MF_GRAYED);
    EnableMenuItem(menu, SC_SIZE, MF_BYCOMMAND | MF_GRAYED);
}

bool CJuntoraDlg::createHub() {
    constexpr int WINDOW_ID = 101;
    m_pIpcWnd = std::make_unique<CIpcMsgWnd>();
    if (!m_pIpcWnd->CreateEx(0, HUB_WINDOW_CLASS, HUB_WINDOW_TITLE, WS_CHILD | WS_BORDER, 0, 0, 0,
                             0, GetDesktopWindow(), WINDOW_ID)) {
        return false;
    }
    m_pIpcWnd->SetWindowPos(HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    if (m_pStartLock) {
        m_pStartLock->Release();
    }
    m_pMonitor = std::make_unique<CAppMonDlg>(m_pIpcWnd.get(), this);
    const bool blockIsOpen = ipcHubWindow == m_pIpcWnd->m_hWnd;
    if (!blockIsOpen || !m_pMonitor->Create()) {
        return false;
    }
    m_pIpcWnd->SetIpc(m_pMonitor->m_pIpc.get());
    return true;
}

void CJuntoraDlg::DoDataExchange(CDataExchange* exchange) {
    DDX_Text(exchange, IDC_VERSION, m_strVersion);
}

void CJuntoraDlg::OnSysCommand(UINT command, LPARAM) {
    if ((command & SC_MASK) != SC_ABOUT) {
        Default();
    } else if (IsWindowEnabled(m_hWnd)) {  // Not while the box stands already.
        CAboutDlg().DoModal();
    }
}

/// There is nothing to draw: the picture of a minimised window is the business of whoever shows the
/// desktop.
void CJuntoraDlg::OnPaint() {
    if (!m_bShowAllowed) {
        ShowWindow(SW_HIDE);
    }
    Default();
}

int CJuntoraDlg::OnQueryDragIcon() { return m_hIcon; }

void CJuntoraDlg::OnAppActivity() {
    if (m_pMonitor) {
        m_pMonitor->ShowWindow(SW_SHOW);
    }
}

bool CJuntoraDlg::mayEnd() const {
    if (!AfxOleCanExitApp()) {
        return false;
    }
    // While tools are being closed, a request is being served (which may show a box) or the bridge
    // waits for a tool, there is a call on the stack that goes on with these objects.
    const bool isBusy = m_nClosingApps > 0 || (m_pIpcWnd && m_pIpcWnd->IsServing()) ||
                        (m_pMonitor && m_pMonitor->m_pIpc->isBridgeCalling());
    if (isBusy) {
        closeLater();
    }
    return !isBusy && !(m_pMonitor && m_pMonitor->HasApps());
}

/// What asks now may be the last object of a hub that was started for it, which never asks again.
void CJuntoraDlg::closeLater() const {
    if (m_pMonitor) {
        m_pMonitor->CloseAtNextTick();
    }
}

void CJuntoraDlg::OnClose() {
    if (m_nEnding > 0 || !mayEnd()) {
        return;
    }
    const ScopedCount ending(m_nEnding);
    // The next hub, which the bus may start at once, waits until this one's window has gone.
    const StartLock startLock(0);
    if (startLock.HasTimedOut()) {
        closeLater();
        return;
    }
    // Who calls from here on is to find that next hub, and no dying one. What is served meanwhile
    // may make an object or sign on a tool.
    COleObjectFactory::RevokeAll();
    if (!mayEnd()) {
        COleObjectFactory::RegisterAll();
        return;
    }
    if (m_pIpcWnd) {
        m_pIpcWnd->SetIpc(
            nullptr);  // Sessions that end may wait, and nobody is to sign on by then.
    }
    if (m_pMonitor) {
        m_pMonitor->DestroyWindow();
        m_pMonitor.reset();
    }
    if (m_pIpcWnd) {
        m_pIpcWnd->DestroyWindow();
        m_pIpcWnd.reset();
    }
    Default();
}

void CJuntoraDlg::OnOK() { OnCancel(); }

/// The end of a close that OnClose has let through comes here, and so does the escape key, by which
/// a person wants a dialog out of the way: that puts it away like its "Close" button, for nobody
/// expects the key to end a program that others depend on.
void CJuntoraDlg::OnCancel() {
    if (m_pIpcWnd) {
        OnAppMinimize();
    } else {
        CDialog::OnCancel();
    }
}

void CJuntoraDlg::OnAppHide() {
    if (m_pMonitor) {
        m_pMonitor->ShowWindow(SW_HIDE);
    }
    ShowWindow(SW_HIDE);
    SetWindowPos(HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void CJuntoraDlg::OnShowWindow(BOOL, UINT) { Default(); }

void CJuntoraDlg::OnAppMinimize() { ShowWindow(SW_MINIMIZE); }

LRESULT CJuntoraDlg::OnShowHub(WPARAM wParam, LPARAM) {
    if (wParam == 1) {
        m_bShowAllowed = 1;
        ShowWindow(SW_SHOWNORMAL);
    }
    return 0;
}

LRESULT CJuntoraDlg::OnCloseApps(WPARAM, LPARAM lParam) {
    if (m_pMonitor) {
        const ScopedCount closing(m_nClosingApps);
        m_pMonitor->CloseAllApps(static_cast<HWND>(lParam));
    }
    return 0;
}

LRESULT CJuntoraDlg::OnStartPlanchet(WPARAM, LPARAM) {
    StartPlanchet(0);
    return 0;
}

const AFX_MSGMAP& CJuntoraDlg::GetMessageMap() const {
    static const AFX_MSGMAP_ENTRY entries[] = {
        ON_MESSAGE<&CJuntoraDlg::OnSysCommand>(WM_SYSCOMMAND),
        ON_MESSAGE<&CJuntoraDlg::OnPaint>(WM_PAINT),
        ON_MESSAGE<&CJuntoraDlg::OnQueryDragIcon>(WM_QUERYDRAGICON),
        ON_COMMAND<&CJuntoraDlg::OnAppActivity>(IDC_ACTIVITY),
        ON_MESSAGE<&CJuntoraDlg::OnClose>(WM_CLOSE),
        ON_COMMAND<&CJuntoraDlg::OnAppHide>(IDC_HIDE),
        ON_MESSAGE<&CJuntoraDlg::OnShowWindow>(WM_SHOWWINDOW),
        ON_COMMAND<&CJuntoraDlg::OnAppMinimize>(IDC_MINIMIZE),
        ON_REGISTERED_MESSAGE<&CJuntoraDlg::OnShowHub>(g_nShowHubMessage),
        ON_REGISTERED_MESSAGE<&CJuntoraDlg::OnCloseApps>(g_nCloseAppsMessage),
        ON_REGISTERED_MESSAGE<&CJuntoraDlg::OnStartPlanchet>(g_nStartPlanchetMessage),
    };
    static const AFX_MSGMAP map{&CDialog::GetMessageMap(), entries};
    return map;
}

}  // namespace juntora
