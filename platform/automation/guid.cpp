#include "platform/automation/guid.h"

#include <cstdio>

namespace juntora {
namespace {

constexpr std::size_t TEXT_LENGTH = 38;
constexpr std::string_view SHAPE = "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}";

std::optional<int> digitOf(char character) {
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    const char letter = static_cast<char>(character | 0x20);
    return letter >= 'a' && letter <= 'f' ? std::optional(letter - 'a' + 10) : std::nullopt;
}

}  // namespace

std::string TextOfGuid(const GUID& guid) {
    char text[TEXT_LENGTH + 1];
    const auto& d = guid.Data4;
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  guid.Data1, unsigned{guid.Data2}, unsigned{guid.Data3}, unsigned{d[0]},
                  unsigned{d[1]}, unsigned{d[2]}, unsigned{d[3]}, unsigned{d[4]}, unsigned{d[5]},
                  unsigned{d[6]}, unsigned{d[7]});
    return text;
}

std::optional<GUID> GuidOfText(std::string_view text) {
    if (text.size() != TEXT_LENGTH) {
        return std::nullopt;
    }
    std::array<BYTE, 16> bytes{};
    std::size_t digits = 0;
    for (std::size_t i = 0; i < TEXT_LENGTH; ++i) {
        if (SHAPE[i] != 'X') {
            if (text[i] != SHAPE[i]) {
                return std::nullopt;
            }
            continue;
        }
        const auto digit = digitOf(text[i]);
        if (!digit) {
            return std::nullopt;
        }
        BYTE& byte = bytes[digits++ / 2];
        byte = static_cast<BYTE>(byte << 4 | *digit);
    }
    GUID guid;
    guid.Data1 = DWORD{bytes[0]} << 24 | DWORD{bytes[1]} << 16 | DWORD{bytes[2]} << 8 | bytes[3];
    guid.Data2 = static_cast<WORD>(bytes[4] << 8 | bytes[5]);
    guid.Data3 = static_cast<WORD>(bytes[6] << 8 | bytes[7]);
    for (std::size_t i = 0; i < guid.Data4.size(); ++i) {
        guid.Data4[i] = bytes[i + 8];
    }
    return guid;
}

}  // namespace juntora
