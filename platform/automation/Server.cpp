#include "platform/automation/Server.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "platform/automation/ClassNames.h"
#include "platform/automation/Introspection.h"
#include "platform/automation/protocol.h"

namespace juntora::automation {
namespace {

constexpr char INTROSPECTABLE[] = "org.freedesktop.DBus.Introspectable";

/// The arguments of a call. Objects among them came with references, which are given back with it.
class Arguments {
public:
    explicit Arguments(ObjectRoad& road) : m_road(road) {}
    ~Arguments() {
        for (IDispatch* object : m_taken) {
            object->Release();
        }
    }
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    /// Reads values until the message, or the array that it is in, ends.
    bool read(sd_bus_message* message) {
        while (sd_bus_message_at_end(message, 0) == 0) {
            VARIANT value;
            if (!readValue(message, &value, m_road)) {
                return false;
            }
            if (auto* const* object = std::get_if<IDispatch*>(&value); object && *object) {
                m_taken.push_back(*object);
            }
            values.push_back(std::move(value));
        }
        return true;
    }

    std::vector<VARIANT> values;

private:
    ObjectRoad& m_road;
    std::vector<IDispatch*> m_taken;
};

/// A member as a plain one of the object's own interface; null for none.
const DispatchMember* memberNamed(const DispatchDescription& description,
                                  const std::string& interface, const std::string& name) {
    if (!interface.empty() && interface != description.interfaceName) {
        return nullptr;
    }
    const auto found = std::ranges::find(description.members, name, &DispatchMember::name);
    return found == description.members.end() ? nullptr : &*found;
}

/// The result of a member; an object in it has a reference that is given back.
struct Result {
    Result() = default;
    ~Result() {
        if (auto* const* object = std::get_if<IDispatch*>(&value); object && *object) {
            (*object)->Release();
        }
    }
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;

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
    Message newReply() const {
        sd_bus_message* reply = nullptr;
        sd_bus_message_new_method_return(message, &reply);
        return Message(reply);
    }
    void reply(const Message& answer) const {
        if (answer) {
            sd_bus_send(bus.handle(), answer.get(), nullptr);
        }
    }
};

bool Server::serve(const ServedClass& served) {
    const std::string name = BusNameOfClass(served.programId);
    // A second program that offers the class stands in line for the name.
    if (name.empty() || sd_bus_request_name(m_bus.handle(), name.c_str(), SD_BUS_NAME_QUEUE) < 0) {
        return false;
    }
    m_classes.push_back(served);
    m_bus.lookAgain();
    return true;
}

const ServedClass* Server::classAt(const std::string& path) const {
    const auto found = std::ranges::find_if(m_classes, [&](const ServedClass& served) {
        return pathOfClass(served.programId) == path;
    });
    return found == m_classes.end() ? nullptr : &*found;
}

void Server::answer(const Message& message) {
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
    // No object is made for a call that fits no member.
    if (served != nullptr) {
        object = m_objects.classObject(*served, call.caller);
    }
    if (object == nullptr) {
        call.refuse(RPC_E_DISCONNECTED);
        return;
    }
    object->AddRef();
    callPlainMember(call, *object, member->id);
    object->Release();
}

/// The interfaces of automation itself; false for any other.
bool Server::answerInterface(Call& call) {
    struct Request {
        const char* interface;
        const char* member;
        void (Server::*handler)(Call&);
    };
    static constexpr Request REQUESTS[] = {
        {INTROSPECTABLE, "Introspect", &Server::introspect},
        {CLASS_INTERFACE, "CreateInstance", &Server::createInstance},
        {OBJECT_INTERFACE, "GetIDOfName", &Server::idOfName},
        {OBJECT_INTERFACE, "Invoke", &Server::invoke},
        {OBJECT_INTERFACE, "QueryInterface", &Server::queryInterface},
        {OBJECT_INTERFACE, "Release", &Server::release},
        {OBJECT_INTERFACE, "Share", &Server::share},
    };
    const auto* const found = std::ranges::find_if(REQUESTS, [&](const Request& request) {
        return call.interface == request.interface && call.member == request.member;
    });
    if (found == std::end(REQUESTS)) {
        return false;
    }
    (this->*found->handler)(call);
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
        for (const ServedClass& each : m_classes) {
            paths.push_back(pathOfClass(each.programId));
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
    IDispatch* object = served != nullptr ? served->create() : nullptr;
    std::string owner;
    std::string path;
    const bool isGiven = object != nullptr && m_objects.give(object, call.caller, &owner, &path);
    if (object != nullptr) {
        object->Release();  // The caller's reference keeps it.
    }
    if (!isGiven) {
        call.refuse(served != nullptr ? E_FAIL : RPC_E_DISCONNECTED);
        return;
    }
    sd_bus_reply_method_return(call.message, "ss", owner.c_str(), path.c_str());
}

void Server::idOfName(Call& call) {
    IDispatch* object = m_objects.held(call.path, call.caller);
    const char* name = nullptr;
    if (object == nullptr || sd_bus_message_read(call.message, "s", &name) <= 0) {
        call.refuse(object == nullptr ? RPC_E_DISCONNECTED : DISP_E_TYPEMISMATCH);
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
        call.refuse(object == nullptr ? RPC_E_DISCONNECTED : DISP_E_TYPEMISMATCH);
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
    Arguments arguments(m_objects);
    // Read in any case: objects among the arguments have come with references.
    const bool isRead = sd_bus_message_read(call.message, "iu", &id, &flags) > 0 &&
                        sd_bus_message_enter_container(call.message, 'a', "v") > 0 &&
                        arguments.read(call.message);
    IDispatch* object = m_objects.held(call.path, call.caller);
    if (object == nullptr || !isRead) {
        call.refuse(object == nullptr ? RPC_E_DISCONNECTED : DISP_E_TYPEMISMATCH);
        return;
    }
    std::vector<VARIANT> now = arguments.values;
    Result result;
    object->AddRef();  // It may be released by what it does.
    const HRESULT done = object->Invoke(id, static_cast<WORD>(flags), now, &result.value);
    object->Release();
    if (done < 0) {
        call.refuse(done);
        return;
    }
    const Message reply = call.newReply();
    bool isWritten = reply && appendVariant(reply.get(), result.value, call.caller, m_objects) &&
                     sd_bus_message_open_container(reply.get(), 'a', "v") >= 0;
    for (std::size_t i = 0; isWritten && i < now.size(); ++i) {
        // What the member has left alone is told as nothing.
        isWritten = appendVariant(reply.get(), now[i] == arguments.values[i] ? VARIANT() : now[i],
                                  call.caller, m_objects);
    }
    if (isWritten && sd_bus_message_close_container(reply.get()) >= 0) {
        call.reply(reply);
    } else {
        call.refuse(E_FAIL);
    }
}

/// A member as a method with arguments of its own, for those who know nothing of automation.
void Server::callPlainMember(Call& call, IDispatch& object, LONG id) {
    Arguments arguments(m_objects);
    if (!arguments.read(call.message)) {
        call.refuse(DISP_E_TYPEMISMATCH);
        return;
    }
    Result result;
    const HRESULT done = object.Invoke(id, DISPATCH_METHOD, arguments.values, &result.value);
    if (done < 0) {
        call.refuse(done);
        return;
    }
    const Message reply = call.newReply();
    const bool isEmpty = std::holds_alternative<std::monostate>(result.value);
    if (reply && (isEmpty || appendPlain(reply.get(), result.value, call.caller, m_objects))) {
        call.reply(reply);
    } else {
        call.refuse(E_FAIL);
    }
}

}  // namespace juntora::automation
