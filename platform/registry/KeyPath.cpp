#include "platform/registry/KeyPath.h"

#include "platform/files/CaseFolding.h"
#include "platform/messages.h"

namespace juntora::registry {
namespace {

constexpr char SEPARATOR = '\\';

bool isHighHalf(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowHalf(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void appendUtf8(char32_t point, std::string* result) {
    const auto continuation = [&](int shift) {
        *result += static_cast<char>(0x80 | ((point >> shift) & 0x3F));
    };
    if (point < 0x80) {
        *result += static_cast<char>(point);
        return;
    }
    if (point < 0x800) {
        *result += static_cast<char>(0xC0 | (point >> 6));
    } else {
        if (point < 0x10000) {
            *result += static_cast<char>(0xE0 | (point >> 12));
        } else {
            *result += static_cast<char>(0xF0 | (point >> 18));
            continuation(12);
        }
        continuation(6);
    }
    continuation(0);
}

}  // namespace

DWORD appendPath(const char* text, KeyPath* path) {
    std::string_view rest = text == nullptr ? "" : text;
    while (!rest.empty()) {
        const std::string_view name = rest.substr(0, rest.find(SEPARATOR));
        if (name.size() > MAX_KEY_NAME) {
            return ERROR_INVALID_PARAMETER;
        }
        if (!name.empty()) {
            path->emplace_back(name);
        }
        rest.remove_prefix(name.size() < rest.size() ? name.size() + 1 : name.size());
    }
    return ERROR_SUCCESS;
}

bool toUtf8(std::u16string_view text, std::string* result) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t point = text[i];
        if (isHighHalf(text[i]) && i + 1 < text.size() && isLowHalf(text[i + 1])) {
            point = 0x10000 + ((point - 0xD800) << 10) + (text[++i] - 0xDC00);
        } else if (isHighHalf(text[i]) || isLowHalf(text[i])) {
            return false;
        }
        appendUtf8(point, result);
    }
    return true;
}

bool isBefore(std::string_view left, std::string_view right) {
    return files::lessIgnoringCase(left, right);
}

}  // namespace juntora::registry
