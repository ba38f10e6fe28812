#include "framework/CDataExchange.h"

#include <string>

#include "platform/desktop/message.h"

namespace juntora {
namespace {

std::string textOf(HWND control) {
    const LRESULT length = SendMessageA(control, WM_GETTEXTLENGTH, 0, 0);
    std::string text(static_cast<std::size_t>(length > 0 ? length : 0) + 1, '\0');
    const int copied = GetWindowTextA(control, text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(copied));
    return text;
}

}  // namespace

void DDX_Text(CDataExchange* exchange, int id, CString& text) {
    const HWND control = exchange->control(id);
    if (control == 0) {
        return;
    }
    const std::string shown = textOf(control);
    if (exchange->m_bSaveAndValidate) {
        text = CString(shown);
    } else if (shown != static_cast<const char*>(text)) {
        SetWindowTextA(control, text);
    }
}

void DDV_MaxChars(CDataExchange* exchange, const CString& text, int most) {
    exchange->m_hasFailed =
        exchange->m_hasFailed || (exchange->m_bSaveAndValidate && text.GetLength() > most);
}

void DDX_Control(CDataExchange* exchange, int id, CWnd& object) {
    if (object.m_hWnd == 0) {
        object.SubclassWindow(exchange->control(id));
    }
}

}  // namespace juntora
