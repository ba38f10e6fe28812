#include "framework/COleDispatchDriver.h"

namespace juntora {

COleDispatchDriver::~COleDispatchDriver() { ReleaseDispatch(); }

bool COleDispatchDriver::hold(HRESULT result, IDispatch* object, COleException* error) {
    if (result < 0) {
        if (error != nullptr) {
            error->m_sc = result;
        }
        return false;
    }
    AttachDispatch(object);
    return true;
}

bool COleDispatchDriver::CreateDispatch(const GUID& classId, COleException* error) {
    IDispatch* object = nullptr;
    const HRESULT result = CreateObject(classId, &object);
    return hold(result, object, error);
}

bool COleDispatchDriver::CreateDispatch(const char* programId, COleException* error) {
    GUID classId;
    const HRESULT result = ClassOfProgram(programId, &classId);
    return result < 0 ? hold(result, nullptr, error) : CreateDispatch(classId, error);
}

void COleDispatchDriver::AttachDispatch(IDispatch* object, bool autoRelease) {
    ReleaseDispatch();
    m_lpDispatch = object;
    m_bAutoRelease = autoRelease;
}

IDispatch* COleDispatchDriver::DetachDispatch() { return std::exchange(m_lpDispatch, nullptr); }

void COleDispatchDriver::ReleaseDispatch() {
    IDispatch* object = DetachDispatch();
    if (object != nullptr && m_bAutoRelease) {
        object->Release();
    }
}

void COleDispatchDriver::release(const VARIANT& result) {
    if (auto* const* object = std::get_if<IDispatch*>(&result); object && *object) {
        (*object)->Release();
    }
}

void COleDispatchDriver::takeBack(LONG* number, const VARIANT& value) {
    if (const auto* now = std::get_if<LONG>(&value)) {
        *number = *now;
    }
}

VARIANT COleDispatchDriver::call(LONG id, WORD flags, std::vector<VARIANT>& values) {
    if (m_lpDispatch == nullptr) {
        AfxThrowOleException(RPC_E_DISCONNECTED);
    }
    VARIANT result;
    // What is served meanwhile may give up the driver's object.
    IDispatch* object = m_lpDispatch;
    object->AddRef();
    const std::vector<VARIANT> given = values;
    const HRESULT done = object->Invoke(id, flags, values, &result);
    object->Release();
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i] != given[i]) {
            release(values[i]);  // Nobody here takes an object back.
        }
    }
    if (done < 0) {
        AfxThrowOleException(done);
    }
    return result;
}

}  // namespace juntora
