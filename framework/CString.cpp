#include "framework/CString.h"

#include "platform/dialog/dialog.h"

namespace juntora {

bool CString::LoadString(int id) {
    char text[1024];
    m_text.assign(text, static_cast<std::size_t>(LoadStringA(id, text, sizeof text)));
    return !m_text.empty();
}

}  // namespace juntora
