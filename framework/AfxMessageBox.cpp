#include "framework/CString.h"
#include "framework/CWinApp.h"
#include "framework/CWnd.h"
#include "platform/dialog/dialog.h"
#include "platform/files/paths.h"
#include "platform/kernel/process.h"

namespace juntora {

int AfxMessageBox(const char* text, unsigned flags) {
    char name[256] = "";
    if (const char* program = ProgramArgument(0)) {
        SplitPath(program, nullptr, nullptr, name, nullptr);
    }
    const CWnd* owner = AfxGetMainWnd();
    return MessageBoxA(owner ? owner->m_hWnd : 0, text, name, flags);
}

int AfxMessageBox(int stringId, unsigned flags) {
    CString text;
    text.LoadString(stringId);
    return AfxMessageBox(static_cast<const char*>(text), flags);
}

}  // namespace juntora
