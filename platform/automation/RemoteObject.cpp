#include "platform/automation/RemoteObject.h"

#include "platform/automation/protocol.h"

namespace juntora::automation {

Message RemoteObject::newCall(const char* member) const {
    return m_bus.newCall(m_owner, m_path, OBJECT_INTERFACE, member);
}

void RemoteObject::shareWith(const std::string& receiver) const {
    const Message message = newCall("Share");
    if (message && sd_bus_message_append(message.get(), "s", receiver.c_str()) >= 0) {
        m_bus.send(message);
    }
}

DWORD RemoteObject::Release() {
    const DWORD left = --m_references;
    if (left == 0) {
        m_bus.send(newCall("Release"));
        delete this;
    }
    return left;
}

HRESULT RemoteObject::QueryInterface(const GUID& iid, IDispatch** out) {
    *out = nullptr;
    const Message message = newCall("QueryInterface");
    HRESULT error = E_FAIL;
    if (message) {
        sd_bus_message_append(message.get(), "s", TextOfGuid(iid).c_str());
    }
    // The object may be released by what is served while the answer is awaited.
    AddRef();
    const Message reply = m_bus.call(message, CALL_MILLISECONDS, &error);
    int isOffered = 0;
    if (reply && (sd_bus_message_read(reply.get(), "b", &isOffered) <= 0 || isOffered == 0)) {
        error = E_NOINTERFACE;
    }
    if (!reply || error < 0) {
        Release();
        return error;
    }
    *out = this;  // With that reference.
    return S_OK;
}

HRESULT RemoteObject::GetIDsOfNames(const char* name, LONG* id) {
    const Message message = newCall("GetIDOfName");
    if (message && sd_bus_message_append(message.get(), "s", name) < 0) {
        return DISP_E_UNKNOWNNAME;  // No text that the bus takes, and so no member's name.
    }
    HRESULT error = E_FAIL;
    const Message reply = m_bus.call(message, CALL_MILLISECONDS, &error);
    return reply && sd_bus_message_read(reply.get(), "i", id) <= 0 ? E_FAIL : error;
}

namespace {

bool appendArguments(sd_bus_message* message, LONG id, WORD flags, std::span<VARIANT> arguments,
                     const std::string& receiver, ObjectRoad& road) {
    if (sd_bus_message_append(message, "iu", id, unsigned{flags}) < 0 ||
        sd_bus_message_open_container(message, 'a', "v") < 0) {
        return false;
    }
    for (const VARIANT& argument : arguments) {
        if (!appendVariant(message, argument, receiver, road)) {
            return false;
        }
    }
    return sd_bus_message_close_container(message) >= 0;
}

/// What the other side has made of the arguments. One that it has left alone stays as it is, for an
/// object among them is the caller's own.
bool readAnswer(sd_bus_message* reply, std::span<VARIANT> arguments, VARIANT* result,
                ObjectRoad& road) {
    VARIANT value;
    if (!readValue(reply, &value, road) || sd_bus_message_enter_container(reply, 'a', "v") <= 0) {
        return false;
    }
    if (result != nullptr) {
        *result = value;
    } else if (auto* const* object = std::get_if<IDispatch*>(&value);
               object != nullptr && *object != nullptr) {
        (*object)->Release();
    }
    for (VARIANT& argument : arguments) {
        if (sd_bus_message_at_end(reply, 0) > 0) {
            break;
        }
        VARIANT now;
        if (!readValue(reply, &now, road)) {
            return false;
        }
        if (!std::holds_alternative<std::monostate>(now)) {
            argument = now;
        }
    }
    return true;
}

}  // namespace

HRESULT RemoteObject::Invoke(LONG id, WORD flags, std::span<VARIANT> arguments, VARIANT* result) {
    const Message message = newCall("Invoke");
    if (message && !appendArguments(message.get(), id, flags, arguments, m_owner, m_road)) {
        return DISP_E_TYPEMISMATCH;
    }
    HRESULT error = E_FAIL;
    AddRef();  // As above.
    const Message reply = m_bus.call(message, CALL_MILLISECONDS, &error);
    if (reply && !readAnswer(reply.get(), arguments, result, m_road)) {
        error = E_FAIL;
    }
    Release();
    return error;
}

}  // namespace juntora::automation
