// A caller of an object: typed members by their numbers.
#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "framework/CException.h"
#include "platform/automation/automation.h"

namespace juntora {

class COleDispatchDriver {
public:
    COleDispatchDriver() = default;
    /// Releases the object, if the driver is to.
    ~COleDispatchDriver();
    COleDispatchDriver(const COleDispatchDriver&) = delete;
    COleDispatchDriver& operator=(const COleDispatchDriver&) = delete;

    IDispatch* m_lpDispatch = nullptr;
    bool m_bAutoRelease = true;  ///< The reference is the driver's, and goes with it.

    /// Makes an object of a class and holds it. False on failure, with the error in `error->m_sc`
    /// where one is given.
    bool CreateDispatch(const GUID& classId, COleException* error = nullptr);
    bool CreateDispatch(const char* programId, COleException* error = nullptr);
    /// Takes over a reference, or holds an object without one.
    void AttachDispatch(IDispatch* object, bool autoRelease = true);
    /// Gives up the object as it is.
    IDispatch* DetachDispatch();
    /// Gives up the object, with its reference if that is the driver's.
    void ReleaseDispatch();

    /// Calls a member with bool, LONG, double, texts, IDispatch* or, for a number that it changes,
    /// LONG*. Throws a COleException when it fails or its result is of another type, and without an
    /// object.
    template <class Result = void, class... Arguments>
    Result InvokeHelper(LONG id, Arguments... arguments) {
        return invoke<Result>(id, DISPATCH_METHOD, arguments...);
    }
    template <class Result>
    Result GetProperty(LONG id) {
        return invoke<Result>(id, DISPATCH_PROPERTYGET);
    }

private:
    static VARIANT valueOf(const char* text) { return std::string(text != nullptr ? text : ""); }
    static VARIANT valueOf(LONG* number) { return *number; }
    template <class Type>
    static VARIANT valueOf(Type value) {
        return value;
    }
    /// An object that nobody has asked for.
    static void release(const VARIANT& result);
    static void takeBack(LONG* number, const VARIANT& value);
    template <class Type>
    static void takeBack(Type, const VARIANT&) {}

    template <class Result, class... Arguments>
    Result invoke(LONG id, WORD flags, Arguments... arguments) {
        std::vector<VARIANT> values{valueOf(arguments)...};
        [[maybe_unused]] VARIANT result = call(id, flags, values);
        std::size_t at = 0;
        (takeBack(arguments, values[at++]), ...);
        if constexpr (std::is_void_v<Result>) {
            release(result);
        } else {
            if (!std::holds_alternative<Result>(result)) {
                release(result);
                AfxThrowOleException(DISP_E_TYPEMISMATCH);
            }
            return std::get<Result>(std::move(result));
        }
    }
    VARIANT call(LONG id, WORD flags, std::vector<VARIANT>& values);
    bool hold(HRESULT result, IDispatch* object, COleException* error);
};

}  // namespace juntora
