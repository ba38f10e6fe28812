// Objects that other programs create and call: what they look like to a caller, whether they live
// in this process or in another one.
//
// All calls are for one thread of a process, that which has started automation. A call into another
// process is waited for at most CALL_MILLISECONDS; meanwhile this thread serves calls into its own
// objects and messages that are sent to its windows, but no posted ones: whoever is called may call
// back. A send that waits for long looks for calls every 50 ms.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "platform/automation/guid.h"
#include "platform/types.h"

namespace juntora {

/// 0 and above: success.
using HRESULT = LONG;

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006);
inline constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000E);
/// The other process, or the bus, has gone.
inline constexpr HRESULT RPC_E_DISCONNECTED = static_cast<HRESULT>(0x80010108);
inline constexpr HRESULT RPC_E_TIMEOUT = static_cast<HRESULT>(0x8001011F);
/// The registry knows no such class, or the name is not that of a class.
inline constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154);
inline constexpr HRESULT CO_E_CLASSSTRING = static_cast<HRESULT>(0x800401F3);
inline constexpr HRESULT CO_E_NOTINITIALIZED = static_cast<HRESULT>(0x800401F0);
/// The program of the class is not there.
inline constexpr HRESULT CO_E_APPNOTFOUND = static_cast<HRESULT>(0x800401F5);
/// It was started, and ended before it offered the class.
inline constexpr HRESULT CO_E_SERVER_EXEC_FAILURE = static_cast<HRESULT>(0x80080005);
/// It was started, and did not offer the class within START_MILLISECONDS.
inline constexpr HRESULT CO_E_SERVER_START_TIMEOUT = static_cast<HRESULT>(0x8000401E);

/// The registry could not be read: its error number, in the lower half.
constexpr HRESULT HRESULT_FROM_WIN32(DWORD error) {
    return error == 0 ? S_OK : static_cast<HRESULT>(0x80070000 | (error & 0xFFFF));
}

inline constexpr DWORD CALL_MILLISECONDS = 30'000;
inline constexpr DWORD START_MILLISECONDS = 10'000;

class IDispatch;

/// A value on its way between a caller and an object: nothing, a truth, a whole number, a number, a
/// text of bytes, an object (not owned; null is allowed).
using VARIANT = std::variant<std::monostate, bool, LONG, double, std::string, IDispatch*>;

/// What a value is, by its place in VARIANT.
enum class VariantKind : BYTE { EMPTY, TRUTH, WHOLE, NUMBER, TEXT, OBJECT };

/// One member of an object.
struct DispatchMember {
    std::string name;
    LONG id;
    VariantKind result;
    std::vector<VariantKind> parameters;
};

/// What an object's members are. Members compare by name without regard to case.
struct DispatchDescription {
    std::string interfaceName;  ///< On the bus; see BusNameOfClass.
    std::vector<DispatchMember> members;
};

/// The value as one of that kind: whole numbers and others count as one another where nothing is
/// lost. Nothing where it is none.
std::optional<VARIANT> ValueAs(VariantKind kind, const VARIANT& value);

/// S_OK, or what is wrong with the arguments of a call.
HRESULT CheckArguments(const DispatchMember& member, std::span<const VARIANT> arguments);

inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;

/// An object that can be called by name or number. References are counted; the last Release ends
/// it.
class IDispatch {
public:
    virtual DWORD AddRef() = 0;
    virtual DWORD Release() = 0;
    /// `*out` gets the object with another reference, null where it does not offer the interface.
    virtual HRESULT QueryInterface(const GUID& iid, IDispatch** out) = 0;
    /// The number of a member, for Invoke.
    virtual HRESULT GetIDsOfNames(const char* name, LONG* id) = 0;
    /// Calls a member. Arguments are replaced by what the member has made of them, where it takes
    /// them by reference. An object in `*result`, or new among the
    /// arguments, comes with a reference for the caller.
    virtual HRESULT Invoke(LONG id, WORD flags, std::span<VARIANT> arguments, VARIANT* result) = 0;
    /// Of an object of this process; null for others.
    virtual const DispatchDescription* Describe() const = 0;

protected:
    ~IDispatch() = default;
};

/// Word of the end of an object's process, for as long as this lives. An object of this process
/// never ends so.
class ObjectWatch {
public:
    /// `gone` is called once, from the message loop or while a call waits: soon for a process that
    /// has gone already.
    ObjectWatch(const IDispatch* object, std::function<void()> gone);
    ~ObjectWatch();
    ObjectWatch(const ObjectWatch&) = delete;
    ObjectWatch& operator=(const ObjectWatch&) = delete;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// Takes all references to an object of this process away from other processes, which find it gone:
/// for one that ends whether or not it is held.
void DisconnectObject(const IDispatch* object);

/// Starts automation for the calling thread: joins the session's bus, or the desktop's own where
/// there is none. Once in a process; later calls return the same. False when there is no bus to be
/// had, with the reason in `*why`.
bool StartAutomation(std::string* why);

/// A class that this process serves.
struct ServedClass {
    std::string programId;  ///< "Voltara.JuntoraLibraryStatus.16.6.0".
    /// Makes an object with one reference; null on failure.
    std::function<IDispatch*()> create;
    /// What its objects are like; stays.
    const DispatchDescription* description;
};

/// Offers the class on the bus from now on, under its name; where another process does, as soon as
/// that one ends. The calls come from the thread's message loop. False without a bus.
bool ServeClass(const ServedClass& served);

/// Offers none of them any more. Calls that have come until then are served before this returns;
/// those that come later find nobody, or the next program that offers the class.
void RevokeClasses();

/// How many references other processes have to objects of this one.
std::size_t ForeignReferences();

/// The bus name of a class: its program identifier, with elements that begin with a digit made one
/// that begins with a letter ("v16_6_0"). Empty where none can be made of it.
std::string BusNameOfClass(const std::string& programId);

/// Makes an object of a class, whose program is started if nobody offers it. `*out` gets the
/// object with one reference, null on failure.
HRESULT CreateObject(const GUID& classId, IDispatch** out);

/// The class of a program identifier, by the registry.
HRESULT ClassOfProgram(const char* programId, GUID* classId);

}  // namespace juntora
