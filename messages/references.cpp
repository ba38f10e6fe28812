#include "messages/references.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace juntora {
namespace {

struct Name {
    std::string_view name;
    char stands;
};
constexpr Name NAMES[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};

std::optional<std::uint32_t> numbered(std::string_view digits) {
    const bool isHexadecimal = digits.starts_with('x');
    digits.remove_prefix(isHexadecimal ? 1 : 0);
    std::uint32_t number = 0;
    const char* end = digits.data() + digits.size();
    const auto [behind, error] =
        std::from_chars(digits.data(), end, number, isHexadecimal ? 16 : 10);
    const bool isCharacter =
        number != 0 && number <= 0x10FFFF && (number < 0xD800 || number > 0xDFFF);
    return error == std::errc() && behind == end && isCharacter ? std::optional(number)
                                                                : std::nullopt;
}

/// Returns where the next character goes. No reference is shorter than what it stands for.
char* putUtf8(char* out, std::uint32_t character) {
    const auto put = [&out](std::uint32_t byte) { *out++ = static_cast<char>(byte); };
    const auto putRest = [&](int shift) { put(0x80 | (character >> shift & 0x3F)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0 | character >> 6);
        putRest(0);
    } else if (character < 0x10000) {
        put(0xE0 | character >> 12);
        putRest(6);
        putRest(0);
    } else {
        put(0xF0 | character >> 18);
        putRest(12);
        putRest(6);
        putRest(0);
    }
    return out;
}

/// `name` is what stands between "&" and ";". Null where it stands for nothing.
char* putReference(char* out, std::string_view name) {
    if (name.starts_with('#')) {
        const auto character = numbered(name.substr(1));
        return character ? putUtf8(out, *character) : nullptr;
    }
    for (const Name& each : NAMES) {
        if (each.name == name) {
            *out = each.stands;
            return out + 1;
        }
    }
    return nullptr;
}

}  // namespace

std::optional<std::string_view> decodeReferences(std::span<char> text) {
    std::string_view rest(text.data(), text.size());
    char* out = text.data();
    for (;;) {
        const std::size_t plain = std::min(rest.find('&'), rest.size());
        if (out != rest.data()) {
            std::memmove(out, rest.data(), plain);
        }
        out += plain;
        rest.remove_prefix(plain);
        if (rest.empty()) {
            return std::string_view(text.data(), static_cast<std::size_t>(out - text.data()));
        }
        const std::size_t end = rest.find(';');
        out = end == std::string_view::npos ? nullptr : putReference(out, rest.substr(1, end - 1));
        if (!out) {
            return std::nullopt;
        }
        rest.remove_prefix(end + 1);
    }
}

}  // namespace juntora
