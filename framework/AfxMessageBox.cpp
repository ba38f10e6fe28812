#include "framework/CString.h"
#include "framework/CWinApp.h"
#include "framework/CWnd.h"
#include "platform/dialog/dialog.h"

namespace juntora {

int AfxMessageBox(const char* text, unsigned flags, unsigned) {
    const CWnd* owner = AfxGetMainWnd();
    return MessageBoxA(owner ? owner->m_hWnd : 0, text, AfxGetAppName(), flags);
}

int AfxMessageBox(int stringId, unsigned flags) {
    CString text;
    text.LoadString(stringId);
    return AfxMessageBox(static_cast<const char*>(text), flags);
}

}  // namespace juntora
