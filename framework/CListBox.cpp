#include "framework/CListBox.h"

#include "platform/desktop/message.h"

namespace juntora {

int CListBox::Send(UINT message, int index, const void* text) const {
    if (m_hWnd == 0) {
        return static_cast<int>(LB_ERR);
    }
    return static_cast<int>(
        SendMessageA(m_hWnd, message, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text)));
}

int CListBox::AddString(const char* line) { return Send(LB_ADDSTRING, 0, line); }
int CListBox::DeleteString(int index) { return Send(LB_DELETESTRING, index, nullptr); }
int CListBox::GetCount() const { return Send(LB_GETCOUNT, 0, nullptr); }
int CListBox::GetText(int index, char* buffer) const { return Send(LB_GETTEXT, index, buffer); }
int CListBox::GetTextLen(int index) const { return Send(LB_GETTEXTLEN, index, nullptr); }
int CListBox::FindStringExact(int after, const char* line) const {
    return Send(LB_FINDSTRINGEXACT, after, line);
}

}  // namespace juntora
