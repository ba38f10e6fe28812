// The suite's base for callers of automation objects.
#pragma once

#include "framework/COleDispatchDriver.h"

namespace juntora {

/// Adds to the framework's driver that it can be deleted through a base pointer, creation that goes
/// on to an interface, and questions for interfaces.
class TvxOleDispatchDriver : public COleDispatchDriver {
public:
    TvxOleDispatchDriver();
    virtual ~TvxOleDispatchDriver();

    /// Makes an object and holds its interface `iid`. 0 when there is no such object, with the
    /// error in `error` where one is given, or when it does not offer the interface; the driver
    /// then holds nothing.
    int createObjectDispatch(const GUID& clsid, const GUID& iid, COleException* error);
    int createObjectDispatch(const char* progId, const GUID& iid, COleException* error);

    /// Asks the object that is held for another interface; the driver keeps what it holds. `*out`,
    /// which is the caller's, is null on failure. E_NOINTERFACE without an object.
    long getDispInterface(const GUID& iid, IDispatch** out);

private:
    int getDispInterface(const GUID& iid);
};

}  // namespace juntora
