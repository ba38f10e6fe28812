#include "platform/kernel/printable.h"

#include <cstdio>

namespace juntora {
namespace {

/// How many bytes the control character has that the text starts with; 0 for none. The second set
/// of them has two in UTF-8, and one of those starts a terminal's commands as escape does.
std::size_t controlLength(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < ' ' || first == 127) {
        return 1;
    }
    const auto second = static_cast<unsigned char>(text.size() > 1 ? text[1] : 0);
    return first == 0xC2 && second >= 0x80 && second < 0xA0 ? 2 : 0;
}

}  // namespace

std::string PrintableText(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t control = controlLength(text);
        for (const char byte : text.substr(0, control)) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(byte));
            result += escape;
        }
        if (control == 0) {
            result += text[0];
        }
        text.remove_prefix(control == 0 ? 1 : control);
    }
    return result;
}

}  // namespace juntora
