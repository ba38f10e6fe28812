#include "framework/CDialog.h"

#include <utility>

#include "framework/CWinApp.h"
#include "platform/desktop/CallOut.h"
#include "platform/dialog/dialog.h"

namespace juntora {
namespace {

/// The object whose dialog is being made. WM_INITDIALOG carries nothing: anybody can send it.
thread_local CDialog* t_inMaking = nullptr;

}  // namespace

/// Where a new dialog enters from the layer. All later messages come by the window procedure.
class DialogEntry {
public:
    static BOOL procedure(HWND window, UINT message, WPARAM, LPARAM) {
        if (message != WM_INITDIALOG || !t_inMaking) {
            return 0;
        }
        CDialog* object = std::exchange(t_inMaking, nullptr);
        BOOL result = 0;
        try {
            result = object->SubclassWindow(window) ? object->OnInitDialog() : 0;
        } catch (...) {
            // Half made it would stand there and answer nothing. Without its window Create and
            // DoModal fail.
            desktop::reportException("the making of dialog", object->m_templateId);
            DestroyWindow(window);
        }
        return result;
    }
};

BOOL CDialog::Create(int templateId, CWnd* parent) {
    const DialogTemplate* source = FindDialogTemplate(templateId);
    if (!source || m_hWnd != 0) {
        return 0;
    }
    t_inMaking = this;
    const HWND window =
        CreateDialogFromTemplate(*source, parent ? parent->m_hWnd : 0, DialogEntry::procedure, 0);
    t_inMaking = nullptr;
    return window != 0 && m_hWnd == window ? 1 : 0;
}

int CDialog::DoModal() {
    const DialogTemplate* source = FindDialogTemplate(m_templateId);
    if (!source || m_hWnd != 0) {
        return -1;
    }
    t_inMaking = this;
    const int result = RunModalDialog(*source, owner(), DialogEntry::procedure, 0);
    t_inMaking = nullptr;
    return result;
}

HWND CDialog::owner() const {
    const CWnd* parent = m_pParentWnd ? m_pParentWnd : AfxGetMainWnd();
    return parent && parent != this ? parent->m_hWnd : 0;
}

void CDialog::EndDialog(int result) { juntora::EndDialog(m_hWnd, result); }

BOOL CDialog::UpdateData(bool save) {
    if (m_hWnd == 0) {
        return 0;
    }
    CDataExchange exchange{this, save};
    DoDataExchange(&exchange);
    return exchange.m_hasFailed ? 0 : 1;
}

bool CDialog::OnCmdMsg(int id) {
    CWinApp* application = AfxGetApp();
    return CWnd::OnCmdMsg(id) || (application && application->OnCmdMsg(id));
}

BOOL CDialog::OnInitDialog() {
    UpdateData(false);
    return 1;
}

void CDialog::OnOK() {
    if (UpdateData(true)) {
        EndDialog(IDOK);
    }
}

void CDialog::OnCancel() { EndDialog(IDCANCEL); }

const AFX_MSGMAP& CDialog::GetMessageMap() const {
    static const AFX_MSGMAP_ENTRY entries[] = {
        ON_COMMAND<&CDialog::OnOK>(IDOK),
        ON_COMMAND<&CDialog::OnCancel>(IDCANCEL),
    };
    static const AFX_MSGMAP map{&CWnd::GetMessageMap(), entries};
    return map;
}

}  // namespace juntora
