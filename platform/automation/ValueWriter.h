// Putting values into a message.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/automation/Message.h"
#include "platform/automation/ObjectRoad.h"

namespace juntora::automation {

/// The values of one message. Until it is released for sending the objects among them are this
/// process's to give: when the writer goes before that, the receiver holds nothing.
class ValueWriter {
public:
    ValueWriter(sd_bus_message* message, std::string receiver, ObjectRoad& road)
        : m_message(message), m_receiver(std::move(receiver)), m_road(road) {}
    ~ValueWriter();
    ValueWriter(const ValueWriter&) = delete;
    ValueWriter& operator=(const ValueWriter&) = delete;

    /// False where a value does not fit; the message is of no use then. Texts that are no UTF-8
    /// travel as bytes.
    bool addVariant(const VARIANT& value);
    bool addVariants(std::span<const VARIANT> values);
    /// With the signature of its kind, as a plain member's result.
    bool addPlain(const VARIANT& value);

    /// To be called before the message is sent.
    void releaseForSending();

private:
    bool addObject(IDispatch* object);

    sd_bus_message* const m_message;
    const std::string m_receiver;
    ObjectRoad& m_road;
    std::vector<IDispatch*> m_given;
};

}  // namespace juntora::automation
