#include "shell/CAppMonDlg.h"

#include <unordered_set>
#include <vector>

#include "hub/AppTable.h"
#include "hub/SelfId.h"
#include "hub/ipcDes.h"
#include "platform/desktop/message.h"
#include "shell/CJuntoraDlg.h"
#include "shell/resources.h"

namespace juntora {
namespace {

constexpr DWORD TICK_MILLISECONDS = 4000;

/// A tool that asks its user whether to save is not hung, however long that takes. One that does
/// not look at its messages at all is commonly busy for a moment, or stopped; a person who waits
/// for the suite to close gives it about this long.
constexpr DWORD HUNG_MILLISECONDS = 5000;

}  // namespace

CAppMonDlg::CAppMonDlg(CWnd* ipcWnd, CJuntoraDlg* owner)
    : CDialog(IDD_MONITOR, owner),
      m_pAppTable(std::make_unique<AppTable>()),
      m_pOwner(owner),
      m_nTemplateId(IDD_MONITOR) {
    ipcSelfId = HUB_ID;
    m_pIpc = std::make_unique<ipcDes>(ipcWnd ? ipcWnd->m_hWnd : 0, m_pAppTable.get(), &m_listBox,
                                      &m_bHadClient, 0, 0);
}

CAppMonDlg::~CAppMonDlg() {
    m_pIpc.reset();  // It works with the table and the list box.
    m_pAppTable.reset();
}

BOOL CAppMonDlg::Create() { return CDialog::Create(m_nTemplateId, m_pOwner); }

bool CAppMonDlg::HasApps() const {
    const AppTable::Cursor cursor = m_pAppTable->atHead();
    return AppTable::at(&cursor) != nullptr;
}

BOOL CAppMonDlg::OnInitDialog() {
    CDialog::OnInitDialog();
    m_nTimerHandle = SetTimer(m_hWnd, m_nTimerId, TICK_MILLISECONDS, nullptr);
    if (m_pIpc) {
        m_pIpc->createBridge();
    }
    return 1;
}

void CAppMonDlg::DoDataExchange(CDataExchange* exchange) {
    DDX_Control(exchange, IDC_ACTIVITY_LIST, m_listBox);
}

void CAppMonDlg::OnCancel() { ShowWindow(SW_HIDE); }

void CAppMonDlg::OnTimer(std::uintptr_t id) {
    if (id != m_nTimerId) {
        Default();
        return;
    }
    ReapDeadWindows();
    if (IsWindow(m_hWnd)) {
        UpdateData(false);
    }
}

void CAppMonDlg::ReapDeadWindows() {
    AppTable::Cursor cursor = m_pAppTable->atHead();
    AppEntry* row = AppTable::at(&cursor);
    while (row) {
        if (IsWindow(row->window)) {
            row = AppTable::next(&cursor);
            continue;
        }
        m_pIpc->toolHasDied(row->window);
        m_pIpc->removeActivityLine(row->window, &row->file);
        m_pIpc->notifyWatchers(row, 0);
        m_pAppTable->removeRow(&cursor);
        row = AppTable::at(&cursor);
    }
    if ((m_bHadClient || m_bCloseIsDue) && !HasApps()) {
        PostMessageA(m_pOwner->m_hWnd, WM_SYSCOMMAND, SC_CLOSE, 0);
    }
}

void CAppMonDlg::CloseAllApps(HWND except) {
    // A list of its own: the tools sign off while they are being closed.
    std::vector<HWND> windows;
    std::unordered_set<HWND> seen{except};
    AppTable::Cursor cursor = m_pAppTable->atHead();
    for (const AppEntry* row = AppTable::at(&cursor); row; row = AppTable::next(&cursor)) {
        if (seen.insert(row->window).second) {
            windows.push_back(row->window);
        }
    }
    for (const HWND window : windows) {
        if (IsWindow(window)) {
            LRESULT ignored = 0;
            SetForegroundWindow(window);
            SendMessageUnlessHung(window, WM_SYSCOMMAND, SC_CLOSE, 0, HUNG_MILLISECONDS, &ignored);
        }
    }
}

const AFX_MSGMAP& CAppMonDlg::GetMessageMap() const {
    static const AFX_MSGMAP_ENTRY entries[] = {ON_MESSAGE<&CAppMonDlg::OnTimer>(WM_TIMER)};
    static const AFX_MSGMAP map{&CDialog::GetMessageMap(), entries};
    return map;
}

}  // namespace juntora
