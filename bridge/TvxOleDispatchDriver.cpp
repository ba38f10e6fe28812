#include "bridge/TvxOleDispatchDriver.h"

namespace juntora {

// Not in the header: libraries that the hub loads find them in the program.
TvxOleDispatchDriver::TvxOleDispatchDriver() = default;

TvxOleDispatchDriver::~TvxOleDispatchDriver() {
    if (m_lpDispatch != nullptr) {
        ReleaseDispatch();
    }
}

int TvxOleDispatchDriver::createObjectDispatch(const GUID& clsid, const GUID& iid,
                                               COleException* error) {
    return CreateDispatch(clsid, error) ? getDispInterface(iid) : 0;
}

int TvxOleDispatchDriver::createObjectDispatch(const char* progId, const GUID& iid,
                                               COleException* error) {
    return CreateDispatch(progId, error) ? getDispInterface(iid) : 0;
}

long TvxOleDispatchDriver::getDispInterface(const GUID& iid, IDispatch** out) {
    *out = nullptr;
    return m_lpDispatch == nullptr ? E_NOINTERFACE : m_lpDispatch->QueryInterface(iid, out);
}

/// Puts the interface in the place of what is held, which goes in any case.
int TvxOleDispatchDriver::getDispInterface(const GUID& iid) {
    if (m_lpDispatch == nullptr) {
        return 0;
    }
    IDispatch* offered = nullptr;
    const HRESULT result = m_lpDispatch->QueryInterface(iid, &offered);
    ReleaseDispatch();
    if (result < 0 || offered == nullptr) {
        return 0;
    }
    AttachDispatch(offered, true);
    return 1;
}

}  // namespace juntora
