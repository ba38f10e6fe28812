// The exchange of data between a dialog's members and its controls.
#pragma once

#include "framework/CString.h"
#include "framework/CWnd.h"

namespace juntora {

/// What DoDataExchange gets: the dialog, and the direction.
struct CDataExchange {
    CWnd* m_pDlgWnd;
    bool m_bSaveAndValidate;   ///< From the controls to the members.
    bool m_hasFailed = false;  ///< What was entered cannot be taken.

    /// 0 if the dialog has no such control.
    HWND control(int id) const { return GetDlgItem(m_pDlgWnd->m_hWnd, id); }
};

/// A member and the text of a control.
void DDX_Text(CDataExchange* exchange, int id, CString& text);

/// Behind DDX_Text: the text may have at most `most` bytes. A longer one that a person has entered
/// makes the exchange fail.
void DDV_MaxChars(CDataExchange* exchange, const CString& text, int most);

/// Has `object` take over a control, at the first exchange.
void DDX_Control(CDataExchange* exchange, int id, CWnd& object);

}  // namespace juntora
