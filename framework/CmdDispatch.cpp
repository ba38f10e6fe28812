#include "framework/CmdDispatch.h"

#include <algorithm>

#include "framework/CCmdTarget.h"
#include "framework/CException.h"
#include "platform/desktop/CallOut.h"
#include "platform/files/CaseFolding.h"

namespace juntora {

DWORD CmdDispatch::AddRef() { return ++m_target.m_dwRef; }

DWORD CmdDispatch::Release() {
    const DWORD left = --m_target.m_dwRef;
    if (left == 0) {
        m_target.OnFinalRelease();
    }
    return left;
}

HRESULT CmdDispatch::QueryInterface(const GUID& iid, IDispatch** out) {
    const auto own = m_target.GetInterfaceMap();
    const bool isOffered = iid == IID_IDispatch || std::ranges::find(own, iid) != own.end();
    *out = isOffered ? this : nullptr;
    if (isOffered) {
        AddRef();
    }
    return isOffered ? S_OK : E_NOINTERFACE;
}

HRESULT CmdDispatch::GetIDsOfNames(const char* name, LONG* id) {
    if (const DispatchDescription* description = Describe()) {
        for (const DispatchMember& member : description->members) {
            if (files::equalIgnoringCase(member.name, name)) {
                *id = member.id;
                return S_OK;
            }
        }
    }
    return DISP_E_UNKNOWNNAME;
}

HRESULT CmdDispatch::Invoke(LONG id, WORD, std::span<VARIANT> arguments, VARIANT* result) {
    const AFX_DISPMAP* map = m_target.GetDispatchMap();
    const AFX_DISPMAP_ENTRY::Handler handler = map != nullptr ? map->find(id) : nullptr;
    if (handler == nullptr) {
        return DISP_E_MEMBERNOTFOUND;
    }
    VARIANT dropped;
    try {
        return handler(m_target, arguments, result != nullptr ? result : &dropped);
    } catch (CException* exception) {
        exception->Delete();
    } catch (...) {
        desktop::reportException("automation member", static_cast<std::uint64_t>(id));
    }
    return DISP_E_EXCEPTION;
}

const DispatchDescription* CmdDispatch::Describe() const {
    const AFX_DISPMAP* map = m_target.GetDispatchMap();
    return map != nullptr ? &map->description() : nullptr;
}

}  // namespace juntora
