#include "hub/TextScan.h"

#include <algorithm>
#include <charconv>

namespace juntora {
namespace {

// The platform's own classification depends on a locale; the records' does not.
bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The digits at the start of `*rest`, which moves behind them.
template <typename Number>
bool takeNumber(std::string_view* rest, int base, Number* number) {
    const char* end = rest->data() + rest->size();
    const auto [behind, error] = std::from_chars(rest->data(), end, *number, base);
    if (error != std::errc()) {
        return false;
    }
    rest->remove_prefix(static_cast<std::size_t>(behind - rest->data()));
    return true;
}

}  // namespace

bool TextScan::word(std::string_view* field) {
    skipBlanks();
    const auto end = std::find_if(m_rest.begin(), m_rest.end(), isBlank);
    const auto length = static_cast<std::size_t>(end - m_rest.begin());
    if (length == 0) {
        return false;
    }
    *field = m_rest.substr(0, length);
    m_rest.remove_prefix(length);
    return true;
}

bool TextScan::decimal(std::int32_t* field) {
    skipBlanks();
    const bool negative = skipSign();
    std::uint32_t number = 0;
    const std::uint32_t limit = negative ? 0x80000000U : 0x7FFFFFFFU;
    if (!takeNumber(&m_rest, 10, &number) || number > limit) {
        return false;
    }
    *field = static_cast<std::int32_t>(negative ? 0U - number : number);
    return true;
}

bool TextScan::window(HWND* field) {
    skipBlanks();
    const bool negative = skipSign();
    if (m_rest.starts_with("0x") || m_rest.starts_with("0X")) {
        m_rest.remove_prefix(2);
    }
    HWND number = 0;
    if (!takeNumber(&m_rest, 16, &number)) {
        return false;
    }
    *field = negative ? 0U - number : number;
    return true;
}

void TextScan::skipBlanks() {
    const auto start = std::find_if_not(m_rest.begin(), m_rest.end(), isBlank);
    m_rest.remove_prefix(static_cast<std::size_t>(start - m_rest.begin()));
}

bool TextScan::skipSign() {
    const bool negative = m_rest.starts_with('-');
    if (negative || m_rest.starts_with('+')) {
        m_rest.remove_prefix(1);
    }
    return negative;
}

HWND scanWindow(std::string_view text) {
    HWND window = 0;
    return TextScan(text).window(&window) ? window : 0;
}

}  // namespace juntora
