#include "platform/automation/ReceivedValues.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <utility>

namespace juntora::automation {
namespace {

bool toLong(std::int64_t number, VARIANT* value) {
    if (number < std::numeric_limits<LONG>::min() || number > std::numeric_limits<LONG>::max()) {
        return false;
    }
    *value = static_cast<LONG>(number);
    return true;
}

template <class Number>
bool readWhole(sd_bus_message* message, char type, VARIANT* value) {
    Number number{};
    if (sd_bus_message_read_basic(message, type, &number) <= 0) {
        return false;
    }
    if constexpr (sizeof number == sizeof(std::int64_t) &&
                  !std::numeric_limits<Number>::is_signed) {
        if (number > static_cast<Number>(std::numeric_limits<LONG>::max())) {
            return false;
        }
    }
    return toLong(static_cast<std::int64_t>(number), value);
}

bool readTruth(sd_bus_message* message, VARIANT* value) {
    int truth = 0;
    const bool isRead = sd_bus_message_read_basic(message, 'b', &truth) > 0;
    *value = truth != 0;
    return isRead;
}

bool readNumber(sd_bus_message* message, VARIANT* value) {
    double number = 0;
    const bool isRead = sd_bus_message_read_basic(message, 'd', &number) > 0;
    *value = number;
    return isRead;
}

bool readText(sd_bus_message* message, char type, VARIANT* value) {
    const char* text = nullptr;
    if (sd_bus_message_read_basic(message, type, &text) <= 0) {
        return false;
    }
    *value = std::string(text);
    return true;
}

/// Bytes that are a text of another encoding than the bus's; one with a NUL is none.
bool readBytes(sd_bus_message* message, VARIANT* value) {
    const void* bytes = nullptr;
    std::size_t size = 0;
    if (sd_bus_message_read_array(message, 'y', &bytes, &size) < 0) {
        return false;
    }
    std::string text(static_cast<const char*>(bytes), size);
    const bool isText = text.find('\0') == text.npos;
    *value = std::move(text);
    return isText;
}

bool readBasic(sd_bus_message* message, char type, VARIANT* value) {
    switch (type) {
        case 'y':
            return readWhole<std::uint8_t>(message, type, value);
        case 'n':
            return readWhole<std::int16_t>(message, type, value);
        case 'q':
            return readWhole<std::uint16_t>(message, type, value);
        case 'i':
            return readWhole<std::int32_t>(message, type, value);
        case 'u':
            return readWhole<std::uint32_t>(message, type, value);
        case 'x':
            return readWhole<std::int64_t>(message, type, value);
        case 't':
            return readWhole<std::uint64_t>(message, type, value);
        case 'b':
            return readTruth(message, value);
        case 'd':
            return readNumber(message, value);
        case 's':
        case 'o':
            return readText(message, type, value);
        case 'g':  // Only the empty one is sent, for no value.
            *value = std::monostate();
            return sd_bus_message_skip(message, "g") > 0;
        default:
            return false;
    }
}

bool isBasic(char type) { return std::strchr("ynqiuxtbdsog", type) != nullptr; }

bool readObject(sd_bus_message* message, VARIANT* value, ObjectRoad& road) {
    const char* owner = nullptr;
    const char* path = nullptr;
    if (sd_bus_message_read(message, OBJECT_SIGNATURE, &owner, &path) <= 0) {
        return false;
    }
    const char* sender = sd_bus_message_get_sender(message);
    const bool isNull = *owner == '\0';
    IDispatch* const object =
        isNull ? nullptr : road.take({owner, path}, sender != nullptr ? sender : "");
    *value = object;
    return isNull || object != nullptr;
}

/// The object in a value; null for none.
IDispatch* objectIn(const VARIANT& value) {
    auto* const* object = std::get_if<IDispatch*>(&value);
    return object != nullptr ? *object : nullptr;
}

}  // namespace

ReceivedValues::ReceivedValues(sd_bus_message* message, ObjectRoad& road)
    : m_message(message), m_road(road) {
    readAll(false);
}

ReceivedValues::~ReceivedValues() {
    for (const VARIANT& value : m_values) {
        if (IDispatch* object = objectIn(value)) {
            object->Release();
        }
    }
}

VARIANT ReceivedValues::take(std::size_t at) {
    VARIANT value = m_values[at];
    if (objectIn(value) != nullptr) {
        m_values[at] = static_cast<IDispatch*>(nullptr);
    }
    return value;
}

/// To the end of the message, or of what has been entered. False where it cannot be read on.
bool ReceivedValues::readAll(bool isInside) {
    char type = 0;
    const char* contents = nullptr;
    while (sd_bus_message_peek_type(m_message, &type, &contents) > 0) {
        const std::string_view inner = contents != nullptr ? contents : "";
        const bool isNest = type == 'v' || (type == 'a' && inner == "v" && !isInside);
        const bool isRead = isNest
                                ? sd_bus_message_enter_container(m_message, type, contents) > 0 &&
                                      readAll(true) && sd_bus_message_exit_container(m_message) >= 0
                                : readNext(type, inner);
        if (!isRead) {
            m_areGood = false;
            return false;
        }
    }
    return true;
}

bool ReceivedValues::readNext(char type, std::string_view contents) {
    VARIANT value;
    bool isValue = false;
    if (type == 'a' && contents == "y") {
        isValue = readBytes(m_message, &value);
    } else if (type == 'r' && contents == "ss") {
        isValue = readObject(m_message, &value, m_road);
    } else if (isBasic(type)) {
        isValue = readBasic(m_message, type, &value);
    } else if (sd_bus_message_skip(m_message, nullptr) < 0) {
        return false;
    }
    if (isValue) {
        m_values.push_back(std::move(value));
    }
    m_areGood = m_areGood && isValue;
    return true;
}

}  // namespace juntora::automation
