#include "framework/CCmdTarget.h"

namespace juntora {

AFX_MSGMAP_ENTRY::Handler AFX_MSGMAP::find(UINT message, int id) const {
    for (const AFX_MSGMAP* map = this; map; map = map->base) {
        for (const AFX_MSGMAP_ENTRY& entry : map->entries) {
            const UINT wanted = entry.registered ? *entry.registered : entry.message;
            if (wanted != 0 && wanted == message && entry.id == id) {
                return entry.handler;
            }
        }
    }
    return nullptr;
}

CCmdTarget::~CCmdTarget() {
    if (m_dispatch) {
        DisconnectObject(m_dispatch.get());
    }
}

void CCmdTarget::EnableAutomation() { m_dispatch = std::make_unique<CmdDispatch>(*this); }

IDispatch* CCmdTarget::GetIDispatch(bool addRef) {
    if (m_dispatch && addRef) {
        m_dispatch->AddRef();
    }
    return m_dispatch.get();
}

bool CCmdTarget::OnCmdMsg(int id) {
    const AFX_MSGMAP_ENTRY::Handler handler = GetMessageMap().find(WM_COMMAND, id);
    if (handler) {
        handler(*this, static_cast<WPARAM>(id), 0);
    }
    return handler != nullptr;
}

const AFX_MSGMAP& CCmdTarget::GetMessageMap() const {
    static const AFX_MSGMAP map{nullptr, {}};
    return map;
}

}  // namespace juntora
