#include "platform/automation/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace juntora::automation {
namespace {

struct Form {
    unsigned mask;        ///< Of the first byte, the bits that tell the form...
    unsigned mark;        ///< ...and what they are.
    std::size_t length;   ///< In bytes.
    std::uint32_t least;  ///< The first code point that needs as many.
};
constexpr Form FORMS[] = {
    {0x80, 0x00, 1, 0x1},
    {0xE0, 0xC0, 2, 0x80},
    {0xF0, 0xE0, 3, 0x800},
    {0xF8, 0xF0, 4, 0x10000},
};

bool isCharacter(std::uint32_t point) {
    const bool isSurrogate = point >= 0xD800 && point < 0xE000;
    const bool isNoncharacter = (point & 0xFFFE) == 0xFFFE || (point >= 0xFDD0 && point < 0xFDF0);
    return point <= 0x10FFFF && !isSurrogate && !isNoncharacter;
}

/// The length of the character that the text begins with, 0 for none.
std::size_t firstCharacter(std::string_view text) {
    const unsigned first = static_cast<unsigned char>(text.front());
    for (const Form& form : FORMS) {
        if ((first & form.mask) != form.mark) {
            continue;
        }
        if (text.size() < form.length) {
            return 0;
        }
        std::uint32_t point = first & ~form.mask;
        for (std::size_t i = 1; i < form.length; ++i) {
            const unsigned next = static_cast<unsigned char>(text[i]);
            if ((next & 0xC0) != 0x80) {
                return 0;
            }
            point = point << 6 | (next & 0x3F);
        }
        return point >= form.least && isCharacter(point) ? form.length : 0;
    }
    return 0;
}

/// Passes over plain signs, eight at a time where there are as many: most of any text.
void skipPlain(std::string_view* text) {
    constexpr std::uint64_t LOWS = 0x0101010101010101;
    constexpr std::uint64_t HIGHS = 0x8080808080808080;
    const char* at = text->data();
    const char* const end = at + text->size();
    std::uint64_t eight = 0;
    for (; end - at >= static_cast<std::ptrdiff_t>(sizeof eight); at += sizeof eight) {
        std::memcpy(&eight, at, sizeof eight);
        // A NUL borrows from its high bit.
        if (((eight | (eight - LOWS)) & HIGHS) != 0) {
            break;
        }
    }
    while (at != end && static_cast<signed char>(*at) > 0) {
        ++at;
    }
    text->remove_prefix(static_cast<std::size_t>(at - text->data()));
}

}  // namespace

bool isBusText(std::string_view text) {
    for (skipPlain(&text); !text.empty(); skipPlain(&text)) {
        const std::size_t length = firstCharacter(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

}  // namespace juntora::automation
