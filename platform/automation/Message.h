// Messages of the bus: what they hold, and how failures travel.
#pragma once

#include <memory>
#include <string>

#include <systemd/sd-bus.h>

#include "platform/automation/automation.h"

namespace juntora::automation {

struct MessageEnd {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, MessageEnd>;

/// An object's owner and path, by which it travels; an empty owner stands for no object.
inline constexpr char OBJECT_SIGNATURE[] = "(ss)";

/// The signature of a kind of value, as plain members have it in their introspection.
const char* signatureOf(VariantKind kind);

/// The error of a call as it travels, and back: the name, and the number in it.
const char* errorNameOf(HRESULT result);
HRESULT resultOfErrorName(const std::string& name);

}  // namespace juntora::automation
