#include "tools/juntoractl/RegistryValue.h"

#include <cstdint>
#include <sstream>

#include "platform/messages.h"

namespace juntora {
namespace {

constexpr DWORD KEY_NAME_ROOM = 256;
constexpr DWORD VALUE_NAME_ROOM = 16'384;

std::string hexadecimal(const std::string& data) {
    constexpr char DIGITS[] = "0123456789abcdef";
    std::string text;
    for (const char byte : data) {
        const auto number = static_cast<unsigned char>(byte);
        text += {DIGITS[number >> 4], DIGITS[number & 15]};
    }
    return text;
}

std::string withoutClosingZero(const std::string& data) {
    return data.empty() || data.back() != '\0' ? data : data.substr(0, data.size() - 1);
}

std::uint32_t numberOf(const std::string& data) {
    std::uint32_t number = 0;
    for (std::size_t i = data.size(); i-- > 0;) {
        number = number << 8 | static_cast<unsigned char>(data[i]);
    }
    return number;
}

Json textsOf(const std::string& data) {
    Json texts = Json::array();
    std::istringstream rest(data);
    for (std::string text; std::getline(rest, text, '\0') && !text.empty();) {
        texts.push_back(text);
    }
    return texts;
}

}  // namespace

std::string RegistryValue::typeName() const {
    switch (type) {
        case REG_SZ:
            return "string";
        case REG_EXPAND_SZ:
            return "expandable";
        case REG_BINARY:
            return "binary";
        case REG_DWORD:
            return "number";
        case REG_MULTI_SZ:
            return "strings";
        default:
            return "type " + std::to_string(type);
    }
}

Json RegistryValue::json() const {
    switch (type) {
        case REG_SZ:
        case REG_EXPAND_SZ:
            return withoutClosingZero(data);
        case REG_MULTI_SZ:
            return textsOf(data);
        case REG_DWORD:
            return data.size() == sizeof(std::uint32_t) ? Json(numberOf(data))
                                                        : Json(hexadecimal(data));
        default:
            return hexadecimal(data);
    }
}

std::vector<std::string> RegistryValue::lines() const {
    const Json value = json();
    if (value.is_array()) {
        return value.get<std::vector<std::string>>();
    }
    return {value.is_string() ? value.get<std::string>() : std::to_string(numberOf(data))};
}

DWORD readRegistryValue(HKEY key, const std::string& name, RegistryValue* value) {
    value->name = name;
    for (;;) {
        auto size = static_cast<DWORD>(value->data.size());
        const DWORD error =
            RegQueryValueExA(key, name.c_str(), &value->type, value->data.data(), &size);
        if (error != ERROR_SUCCESS && error != ERROR_MORE_DATA) {
            return error;
        }
        value->data.resize(size);
        if (error == ERROR_SUCCESS) {
            return error;
        }
    }
}

DWORD readRegistryValues(HKEY key, std::vector<RegistryValue>* values) {
    std::string name(VALUE_NAME_ROOM, '\0');
    for (DWORD index = 0;; ++index) {
        DWORD length = VALUE_NAME_ROOM;
        DWORD error = RegEnumValueA(key, index, name.data(), &length, nullptr, nullptr, nullptr);
        RegistryValue value;
        if (error == ERROR_SUCCESS) {
            error = readRegistryValue(key, name.substr(0, length), &value);
        }
        if (error == ERROR_FILE_NOT_FOUND) {
            continue;  // Deleted since it was named.
        }
        if (error != ERROR_SUCCESS) {
            return error == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : error;
        }
        values->push_back(std::move(value));
    }
}

DWORD readSubkeyNames(HKEY key, std::vector<std::string>* names) {
    for (DWORD index = 0;; ++index) {
        char name[KEY_NAME_ROOM];
        DWORD length = sizeof name;
        const DWORD error = RegEnumKeyExA(key, index, name, &length);
        if (error != ERROR_SUCCESS) {
            return error == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : error;
        }
        names->emplace_back(name, length);
    }
}

}  // namespace juntora
