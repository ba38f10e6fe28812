#include "platform/automation/RemoteObject.h"

#include <algorithm>

#include "platform/automation/ReceivedValues.h"
#include "platform/automation/ValueWriter.h"
#include "platform/automation/protocol.h"

namespace juntora::automation {

Message RemoteObject::newCall(const char* member) const {
    return m_bus.newCall(m_address.owner, m_address.path, OBJECT_INTERFACE, member);
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

/// What the other side has made of the arguments. One that it has left alone, which comes as
/// nothing, stays as it is: an object among them is the caller's own.
void takeAnswer(ReceivedValues& answer, std::span<VARIANT> arguments, VARIANT* result) {
    if (result != nullptr) {
        *result = answer.take(0);
    }
    const std::size_t count = std::min(arguments.size(), answer.size() - 1);
    for (std::size_t i = 0; i < count; ++i) {
        VARIANT now = answer.take(i + 1);
        if (!std::holds_alternative<std::monostate>(now)) {
            arguments[i] = std::move(now);
        }
    }
}

}  // namespace

HRESULT RemoteObject::Invoke(LONG id, WORD flags, std::span<VARIANT> arguments, VARIANT* result) {
    const Message message = newCall("Invoke");
    if (!message) {
        return RPC_E_DISCONNECTED;
    }
    ValueWriter writer(message.get(), m_address.owner, m_road);
    if (sd_bus_message_append(message.get(), "iu", id, unsigned{flags}) < 0 ||
        !writer.addVariants(arguments)) {
        return DISP_E_TYPEMISMATCH;
    }
    writer.releaseForSending();
    HRESULT error = E_FAIL;
    AddRef();  // As above.
    if (const Message reply = m_bus.call(message, CALL_MILLISECONDS, &error)) {
        ReceivedValues answer(reply.get(), m_road);
        if (answer.areGood() && answer.size() > 0 &&
            sd_bus_message_has_signature(reply.get(), "vav") > 0) {
            takeAnswer(answer, arguments, result);
        } else {
            error = E_FAIL;
        }
    }
    Release();
    return error;
}

}  // namespace juntora::automation
