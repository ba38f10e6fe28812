#include "platform/automation/Message.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>

namespace juntora::automation {
namespace {

/// An object's owner and path; an empty owner stands for no object.
constexpr char OBJECT_CONTENTS[] = "ss";

struct ErrorName {
    HRESULT result;
    const char* name;
};

constexpr ErrorName ERROR_NAMES[] = {
    {DISP_E_MEMBERNOTFOUND, "juntora.Error.MemberNotFound"},
    {DISP_E_TYPEMISMATCH, "juntora.Error.TypeMismatch"},
    {DISP_E_UNKNOWNNAME, "juntora.Error.UnknownName"},
    {DISP_E_BADPARAMCOUNT, "juntora.Error.ParameterCount"},
    {DISP_E_EXCEPTION, "juntora.Error.Exception"},
    {E_NOINTERFACE, "juntora.Error.NoInterface"},
    {E_FAIL, "juntora.Error.Failed"},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_UNKNOWN_OBJECT},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_NO_REPLY},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_DISCONNECTED},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_SERVICE_UNKNOWN},
    {RPC_E_DISCONNECTED, SD_BUS_ERROR_NAME_HAS_NO_OWNER},
    {RPC_E_TIMEOUT, SD_BUS_ERROR_TIMEOUT},
};

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

bool appendText(sd_bus_message* message, const std::string& text) {
    return isUtf8(text) ? sd_bus_message_append_basic(message, 's', text.c_str()) >= 0
                        : sd_bus_message_append_array(message, 'y', text.data(), text.size()) >= 0;
}

bool appendObject(sd_bus_message* message, IDispatch* object, const std::string& receiver,
                  ObjectRoad& road) {
    std::string owner;
    std::string path;
    return (object == nullptr || road.give(object, receiver, &owner, &path)) &&
           sd_bus_message_append(message, "(ss)", owner.c_str(), path.c_str()) >= 0;
}

const char* signatureOfValue(const VARIANT& value) {
    const auto* const text = std::get_if<std::string>(&value);
    return text != nullptr && !isUtf8(*text) ? "ay"
                                             : signatureOf(static_cast<VariantKind>(value.index()));
}

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

bool readObject(sd_bus_message* message, VARIANT* value, ObjectRoad& road) {
    const char* owner = nullptr;
    const char* path = nullptr;
    if (sd_bus_message_read(message, "(ss)", &owner, &path) <= 0) {
        return false;
    }
    const char* sender = sd_bus_message_get_sender(message);
    *value = *owner == '\0' ? nullptr : road.take(owner, path, sender != nullptr ? sender : "");
    return *owner == '\0' || std::get<IDispatch*>(*value) != nullptr;
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

}  // namespace

const char* signatureOf(VariantKind kind) {
    constexpr const char* SIGNATURES[] = {"g", "b", "i", "d", "s", "(ss)"};
    return SIGNATURES[static_cast<std::size_t>(kind)];
}

bool appendPlain(sd_bus_message* message, const VARIANT& value, const std::string& receiver,
                 ObjectRoad& road) {
    switch (static_cast<VariantKind>(value.index())) {
        case VariantKind::EMPTY:
            return sd_bus_message_append_basic(message, 'g', "") >= 0;
        case VariantKind::TRUTH: {
            const int truth = std::get<bool>(value) ? 1 : 0;
            return sd_bus_message_append_basic(message, 'b', &truth) >= 0;
        }
        case VariantKind::WHOLE:
            return sd_bus_message_append_basic(message, 'i', &std::get<LONG>(value)) >= 0;
        case VariantKind::NUMBER:
            return sd_bus_message_append_basic(message, 'd', &std::get<double>(value)) >= 0;
        case VariantKind::TEXT:
            return appendText(message, std::get<std::string>(value));
        case VariantKind::OBJECT:
            return appendObject(message, std::get<IDispatch*>(value), receiver, road);
    }
    return false;
}

bool appendVariant(sd_bus_message* message, const VARIANT& value, const std::string& receiver,
                   ObjectRoad& road) {
    return sd_bus_message_open_container(message, 'v', signatureOfValue(value)) >= 0 &&
           appendPlain(message, value, receiver, road) &&
           sd_bus_message_close_container(message) >= 0;
}

bool readValue(sd_bus_message* message, VARIANT* value, ObjectRoad& road) {
    char type = 0;
    const char* contents = nullptr;
    if (sd_bus_message_peek_type(message, &type, &contents) <= 0) {
        return false;
    }
    switch (type) {
        case 'v':
            return sd_bus_message_enter_container(message, 'v', contents) > 0 &&
                   readValue(message, value, road) && sd_bus_message_exit_container(message) >= 0;
        case 'a':
            return std::string_view(contents) == "y" && readBytes(message, value);
        case 'r':
            return std::string_view(contents) == OBJECT_CONTENTS &&
                   readObject(message, value, road);
        default:
            return readBasic(message, type, value);
    }
}

const char* errorNameOf(HRESULT result) {
    const auto* const found = std::ranges::find(ERROR_NAMES, result, &ErrorName::result);
    return found == std::end(ERROR_NAMES) ? "juntora.Error.Failed" : found->name;
}

HRESULT resultOfErrorName(const std::string& name) {
    for (const ErrorName& known : ERROR_NAMES) {
        if (name == known.name) {
            return known.result;
        }
    }
    return E_FAIL;
}

}  // namespace juntora::automation
