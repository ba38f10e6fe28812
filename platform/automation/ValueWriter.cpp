#include "platform/automation/ValueWriter.h"

#include <algorithm>
#include <utility>

#include "platform/automation/Utf8.h"

namespace juntora::automation {
namespace {

const char* signatureOfValue(const VARIANT& value) {
    const auto* const text = std::get_if<std::string>(&value);
    return text != nullptr && !isBusText(*text)
               ? "ay"
               : signatureOf(static_cast<VariantKind>(value.index()));
}

bool addText(sd_bus_message* message, const std::string& text) {
    return isBusText(text)
               ? sd_bus_message_append_basic(message, 's', text.c_str()) >= 0
               : sd_bus_message_append_array(message, 'y', text.data(), text.size()) >= 0;
}

}  // namespace

ValueWriter::~ValueWriter() {
    for (IDispatch* object : m_given) {
        m_road.takeBack(object, m_receiver);
    }
}

void ValueWriter::releaseForSending() {
    for (IDispatch* object : std::exchange(m_given, {})) {
        m_road.announce(object, m_receiver);
    }
}

bool ValueWriter::addObject(IDispatch* object) {
    ObjectAddress address;
    if (object != nullptr) {
        if (!m_road.give(object, m_receiver, &address)) {
            return false;
        }
        m_given.push_back(object);
    }
    return sd_bus_message_append(m_message, OBJECT_SIGNATURE, address.owner.c_str(),
                                 address.path.c_str()) >= 0;
}

bool ValueWriter::addPlain(const VARIANT& value) {
    switch (static_cast<VariantKind>(value.index())) {
        case VariantKind::EMPTY:
            return sd_bus_message_append_basic(m_message, 'g', "") >= 0;
        case VariantKind::TRUTH: {
            const int truth = std::get<bool>(value) ? 1 : 0;
            return sd_bus_message_append_basic(m_message, 'b', &truth) >= 0;
        }
        case VariantKind::WHOLE:
            return sd_bus_message_append_basic(m_message, 'i', &std::get<LONG>(value)) >= 0;
        case VariantKind::NUMBER:
            return sd_bus_message_append_basic(m_message, 'd', &std::get<double>(value)) >= 0;
        case VariantKind::TEXT:
            return addText(m_message, std::get<std::string>(value));
        case VariantKind::OBJECT:
            return addObject(std::get<IDispatch*>(value));
    }
    return false;
}

bool ValueWriter::addVariant(const VARIANT& value) {
    return sd_bus_message_open_container(m_message, 'v', signatureOfValue(value)) >= 0 &&
           addPlain(value) && sd_bus_message_close_container(m_message) >= 0;
}

bool ValueWriter::addVariants(std::span<const VARIANT> values) {
    return sd_bus_message_open_container(m_message, 'a', "v") >= 0 &&
           std::ranges::all_of(values,
                               [this](const VARIANT& value) { return addVariant(value); }) &&
           sd_bus_message_close_container(m_message) >= 0;
}

}  // namespace juntora::automation
