// Messages of the bus, and values in them.
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

/// How objects travel: as the bus name of their process and their path there.
class ObjectRoad {
public:
    virtual ~ObjectRoad() = default;
    /// A reference for the process `receiver` (a bus name).
    virtual bool give(IDispatch* object, const std::string& receiver, std::string* owner,
                      std::string* path) = 0;
    /// The object that `sender` has sent with a reference for this process; with one for the
    /// caller.
    virtual IDispatch* take(const std::string& owner, const std::string& path,
                            const std::string& sender) = 0;
};

/// Appends a value as a variant. Texts that are no UTF-8 travel as bytes. False where it does not
/// fit.
bool appendVariant(sd_bus_message* message, const VARIANT& value, const std::string& receiver,
                   ObjectRoad& road);

/// Appends a value with the signature of its kind, as a plain member's result.
bool appendPlain(sd_bus_message* message, const VARIANT& value, const std::string& receiver,
                 ObjectRoad& road);

/// Reads the next value, in a variant or not. Any whole number that a LONG holds becomes one.
/// Objects come with a reference. False for a value of a type that no VARIANT has.
bool readValue(sd_bus_message* message, VARIANT* value, ObjectRoad& road);

/// The signature of a kind of value, as plain members have it in their introspection.
const char* signatureOf(VariantKind kind);

/// The error of a call as it travels, and back: the name, and the number in it.
const char* errorNameOf(HRESULT result);
HRESULT resultOfErrorName(const std::string& name);

}  // namespace juntora::automation
