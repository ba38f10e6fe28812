#include "platform/automation/ValueWriter.h"

#include <algorithm>
#include <utility>

namespace juntora::automation {
namespace {

/// The length of the UTF-8 sequence that begins there, 0 for none.
std::size_t sequenceAt(const std::string& text, std::size_t at) {
    const auto byte = [&](std::size_t index) {
        return index < text.size() ? static_cast<unsigned char>(text[index]) : 0U;
    };
    const auto follows = [&](std::size_t index) { return (byte(index) & 0xC0) == 0x80; };
    const unsigned first = byte(at);
    if (first < 0x80) {
        return first == 0 ? 0 : 1;
    }
    if (first >= 0xC2 && first < 0xE0) {
        return follows(at + 1) ? 2 : 0;
    }
    const unsigned second = byte(at + 1);
    if (first == 0xEF && ((second == 0xB7 && byte(at + 2) >= 0x90 && byte(at + 2) < 0xB0) ||
                          (second == 0xBF && byte(at + 2) >= 0xBE))) {
        return 0;  // Noncharacters, which the bus refuses.
    }
    if (first >= 0xE0 && first < 0xF0) {
        const bool isOverlong = first == 0xE0 && byte(at + 1) < 0xA0;
        const bool isSurrogate = first == 0xED && byte(at + 1) >= 0xA0;
        return follows(at + 1) && follows(at + 2) && !isOverlong && !isSurrogate ? 3 : 0;
    }
    if (first >= 0xF0 && first < 0xF5) {
        const bool isOverlong = first == 0xF0 && byte(at + 1) < 0x90;
        const bool isBeyond = first == 0xF4 && byte(at + 1) >= 0x90;
        return follows(at + 1) && follows(at + 2) && follows(at + 3) && !isOverlong && !isBeyond
                   ? 4
                   : 0;
    }
    return 0;
}

bool isUtf8(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = sequenceAt(text, at);
        if (length == 0) {
            return false;
        }
        at += length;
    }
    return true;
}

const char* signatureOfValue(const VARIANT& value) {
    const auto* const text = std::get_if<std::string>(&value);
    return text != nullptr && !isUtf8(*text) ? "ay"
                                             : signatureOf(static_cast<VariantKind>(value.index()));
}

bool addText(sd_bus_message* message, const std::string& text) {
    return isUtf8(text) ? sd_bus_message_append_basic(message, 's', text.c_str()) >= 0
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
