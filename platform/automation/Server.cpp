#include "platform/automation/Server.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>

#include "platform/automation/ClassNames.h"
#include "platform/automation/Introspection.h"
#include "platform/automation/ReceivedValues.h"
#include "platform/automation/ValueWriter.h"
#include "platform/automation/protocol.h"
#include "platform/desktop/CallOut.h"

namespace juntora::automation {
namespace {

constexpr DWORD NAME_MICROSECONDS = 5'000'000;
constexpr std::uint32_t STAND_IN_LINE = 0;  ///< Of the bus's RequestName: no flag at all.

constexpr char INTROSPECTABLE[] = "org.freedesktop.DBus.Introspectable";

/// A member as a plain one of the object's own interface; null for none.
const DispatchMember* memberNamed(const DispatchDescription& description,
                                  const std::string& interface, const std::string& name) {
    if (!interface.empty() && interface != description.interfaceName) {
        return nullptr;
    }
    const auto found = std::ranges::find(description.members, name, &DispatchMember::name);
    return found == description.members.end() ? nullptr : &*found;
}

/// What a call has made; an object in it has a reference that is given back.
struct Result {
    explicit Result(VARIANT made = {}) : value(std::move(made)) {}
    ~Result() {
        if (hasObject()) {
            std::get<IDispatch*>(value)->Release();
        }
    }
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;

    bool hasObject() const {
        auto* const* object = std::get_if<IDispatch*>(&value);
        return object != nullptr && *object != nullptr;
    }

    VARIANT value;
};

}  // namespace

/// A call that is being answered.
struct Server::Call {
    Bus& bus;
    sd_bus_message* message;
    std::string path;
    std::string interface;
    std::string member;
    std::string caller;

    void refuse(HRESULT result) const {
        char text[64];
        std::snprintf(text, sizeof text, "the call failed (0x%08X)", static_cast<DWORD>(result));
        sd_bus_reply_method_errorf(message, errorNameOf(result), "%s", text);
    }
    /// Answers with what `add` puts into the message; false where that does not fit.
    template <class Add>
    bool answerWith(ObjectRoad& road, Add add) const {
        sd_bus_message* reply = nullptr;
        sd_bus_message_new_method_return(message, &reply);
        const Message owned(reply);
        ValueWriter writer(reply, caller, road);
        if (!owned || !add(writer)) {
            return false;
        }
        writer.releaseForSending();
        sd_bus_send(bus.handle(), reply, nullptr);
        return true;
    }
};

bool Server::serve(const ServedClass& served) {
    const std::string path = pathOfClass(served.programId);
    m_classes[path] = served;  // From the moment on that the bus has the name calls come.
    // A second program that offers the class stands in line for the name.
    const std::string own = ownNameOfClass(served.programId);
    bool isServed = !own.empty();
    for (const std::string& name : {BusNameOfClass(served.programId), own}) {
        const Message request = newNameRequest("RequestName", name);
        // Nothing is served meanwhile: the program may not be as far yet.
        isServed =
            isServed && request && sd_bus_message_append(request.get(), "u", STAND_IN_LINE) >= 0 &&
            sd_bus_call(m_bus.handle(), request.get(), NAME_MICROSECONDS, nullptr, nullptr) >= 0;
    }
    if (!isServed) {
        m_classes.erase(path);
    }
    m_bus.lookAgain();
    return isServed;
}

void Server::revokeAll() {
    // What is served meanwhile may offer or revoke by itself.
    for (const auto& [path, served] : std::map(m_classes)) {
        for (const std::string& name :
             {BusNameOfClass(served.programId), ownNameOfClass(served.programId)}) {
            HRESULT error = E_FAIL;
            m_bus.call(newNameRequest("ReleaseName", name), NAME_MICROSECONDS / 1'000, &error);
        }
    }
    m_classes.clear();
}

Message Server::newNameRequest(const char* member, const std::string& name) const {
    Message message = m_bus.newCall(DAEMON_NAME, DAEMON_PATH, DAEMON_NAME, member);
    const bool isWritten = message && sd_bus_message_append(message.get(), "s", name.c_str()) >= 0;
    return isWritten ? std::move(message) : nullptr;
}

const ServedClass* Server::classAt(const std::string& path) const {
    const auto found = m_classes.find(path);
    return found == m_classes.end() ? nullptr : &found->second;
}

void Server::answer(const Message& message) {
    try {
        answerCall(message);
    } catch (...) {
        desktop::reportException("automation call", 0);
        sd_bus_reply_method_errorf(message.get(), errorNameOf(DISP_E_EXCEPTION),
                                   "the call raised an exception");
    }
}

void Server::answerCall(const Message& message) {
    const auto text = [](const char* value) { return std::string(value ? value : ""); };
    sd_bus_message* const raw = message.get();
    Call call{m_bus,
              raw,
              text(sd_bus_message_get_path(raw)),
              text(sd_bus_message_get_interface(raw)),
              text(sd_bus_message_get_member(raw)),
              text(sd_bus_message_get_sender(raw))};
    if (answerInterface(call)) {
        return;
    }
    const ServedClass* served = classAt(call.path);
    IDispatch* object = m_objects.held(call.path, call.caller);
    const DispatchDescription* description = served != nullptr   ? served->description
                                             : object != nullptr ? object->Describe()
                                                                 : nullptr;
    const DispatchMember* member =
        description != nullptr ? memberNamed(*description, call.interface, call.member) : nullptr;
    if (member == nullptr) {
        sd_bus_reply_method_errorf(call.message, SD_BUS_ERROR_UNKNOWN_METHOD,
                                   "there is no member \"%s\" here", call.member.c_str());
        return;
    }
    callPlainMember(call, *member, served, object);
}

/// The interfaces of automation itself; false for any other.
bool Server::answerInterface(Call& call) {
    struct Request {
        const char* interface;
        const char* member;
        const char* signature;
        void (Server::*handler)(Call&);
    };
    static constexpr Request REQUESTS[] = {
        {INTROSPECTABLE, "Introspect", "", &Server::introspect},
        {CLASS_INTERFACE, "CreateInstance", "", &Server::createInstance},
        {OBJECT_INTERFACE, "GetIDOfName", "s", &Server::idOfName},
        {OBJECT_INTERFACE, "Invoke", "iuav", &Server::invoke},
        {OBJECT_INTERFACE, "QueryInterface", "s", &Server::queryInterface},
        {OBJECT_INTERFACE, "Release", "", &Server::release},
        {OBJECT_INTERFACE, "Share", "s", &Server::share},
    };
    const auto* const found = std::ranges::find_if(REQUESTS, [&](const Request& request) {
        return call.interface == request.interface && call.member == request.member;
    });
    if (found == std::end(REQUESTS)) {
        return false;
    }
    if (sd_bus_message_has_signature(call.message, found->signature) > 0) {
        (this->*found->handler)(call);
    } else {
        call.refuse(DISP_E_TYPEMISMATCH);
    }
    return true;
}

void Server::introspect(Call& call) {
    std::string document;
    const IDispatch* object = m_objects.held(call.path, call.caller);
    if (const ServedClass* served = classAt(call.path)) {
        document = introspectObject(*served->description, true);
    } else if (object != nullptr && object->Describe() != nullptr) {
        document = introspectObject(*object->Describe(), false);
    } else {
        std::vector<std::string> paths;
        for (const auto& [path, each] : m_classes) {
            paths.push_back(path);
        }
        document = introspectWay(call.path, paths);
    }
    if (document.empty()) {
        call.refuse(RPC_E_DISCONNECTED);
        return;
    }
    sd_bus_reply_method_return(call.message, "s", document.c_str());
}

void Server::createInstance(Call& call) {
    const ServedClass* served = classAt(call.path);
    if (sd_bus_message_get_expect_reply(call.message) <= 0) {
        return;  // Nobody could ever release it.
    }
    const Result made(served != nullptr ? served->create() : nullptr);
    const bool isGiven = made.hasObject() && call.answerWith(m_objects, [&](ValueWriter& writer) {
        return writer.addPlain(made.value);
    });
    if (!isGiven) {
        call.refuse(served != nullptr ? E_FAIL : RPC_E_DISCONNECTED);
    }
}

void Server::idOfName(Call& call) {
    IDispatch* object = m_objects.held(call.path, call.caller);
    const char* name = nullptr;
    if (object == nullptr || sd_bus_message_read(call.message, "s", &name) <= 0) {
        call.refuse(RPC_E_DISCONNECTED);
        return;
    }
    LONG id = 0;
    const HRESULT result = object->GetIDsOfNames(name, &id);
    if (result < 0) {
        call.refuse(result);
    } else {
        sd_bus_reply_method_return(call.message, "i", id);
    }
}

void Server::queryInterface(Call& call) {
    IDispatch* object = m_objects.held(call.path, call.caller);
    const char* text = nullptr;
    if (object == nullptr || sd_bus_message_read(call.message, "s", &text) <= 0) {
        call.refuse(RPC_E_DISCONNECTED);
        return;
    }
    IDispatch* offered = nullptr;
    if (const auto iid = GuidOfText(text)) {
        object->QueryInterface(*iid, &offered);
    }
    sd_bus_reply_method_return(call.message, "b", offered != nullptr ? 1 : 0);
    if (offered != nullptr) {
        offered->Release();
    }
}

void Server::share(Call& call) {
    const char* other = nullptr;
    const bool isDone = sd_bus_message_read(call.message, "s", &other) > 0 &&
                        m_objects.share(call.path, call.caller, other);
    if (isDone) {
        sd_bus_reply_method_return(call.message, "");
    } else {
        call.refuse(RPC_E_DISCONNECTED);
    }
}

void Server::release(Call& call) {
    if (m_objects.release(call.path, call.caller)) {
        sd_bus_reply_method_return(call.message, "");
    } else {
        call.refuse(RPC_E_DISCONNECTED);
    }
}

void Server::invoke(Call& call) {
    LONG id = 0;
    unsigned flags = 0;
    // Read in any case: objects among the arguments have come with references.
    const bool isCall = sd_bus_message_read(call.message, "iu", &id, &flags) > 0;
    const ReceivedValues arguments(call.message, m_objects);
    IDispatch* object = m_objects.held(call.path, call.caller);
    if (object == nullptr || !isCall || !arguments.areGood()) {
        call.refuse(object == nullptr ? RPC_E_DISCONNECTED : DISP_E_TYPEMISMATCH);
        return;
    }
    std::vector<VARIANT> now = arguments.all();
    Result result;
    object->AddRef();  // It may be released by what it does.
    const HRESULT done = object->Invoke(id, static_cast<WORD>(flags), now, &result.value);
    object->Release();
    // What the member has left alone is told as nothing.
    for (std::size_t i = 0; i < now.size(); ++i) {
        if (now[i] == arguments.all()[i]) {
            now[i] = VARIANT();
        }
    }
    if (done < 0) {
        call.refuse(done);
    } else if (!call.answerWith(m_objects, [&](ValueWriter& writer) {
                   return writer.addVariant(result.value) && writer.addVariants(now);
               })) {
        call.refuse(E_FAIL);
    }
}

/// A member as a method with arguments of its own, for those who know nothing of automation: of
/// `object`, or of the one that is made for the caller of a class.
void Server::callPlainMember(Call& call, const DispatchMember& member, const ServedClass* served,
                             IDispatch* object) {
    const ReceivedValues received(call.message, m_objects);
    std::vector<VARIANT> arguments = received.all();
    const HRESULT fit =
        received.areGood() ? CheckArguments(member, arguments) : DISP_E_TYPEMISMATCH;
    if (fit < 0) {
        call.refuse(fit);  // No object is made for it.
        return;
    }
    if (served != nullptr) {
        object = m_objects.classObject(*served, call.caller);
    }
    if (object == nullptr) {
        call.refuse(RPC_E_DISCONNECTED);
        return;
    }
    Result result;
    object->AddRef();
    const HRESULT done = object->Invoke(member.id, DISPATCH_METHOD, arguments, &result.value);
    object->Release();
    const bool isEmpty = std::holds_alternative<std::monostate>(result.value);
    if (done < 0) {
        call.refuse(done);
    } else if (!call.answerWith(m_objects, [&](ValueWriter& writer) {
                   return isEmpty || writer.addPlain(result.value);
               })) {
        call.refuse(E_FAIL);
    }
}

}  // namespace juntora::automation
