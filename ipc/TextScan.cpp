#include "ipc/TextScan.h"

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

bool TextScan::quoted(std::string_view skipped, std::string_view* field) {
    const std::size_t start = m_rest.find_first_not_of(skipped);
    if (start == 0 || start == std::string_view::npos) {
        return false;
    }
    m_rest.remove_prefix(start);
    skipBlanks();
    const std::size_t length = std::min(m_rest.find('"'), m_rest.size());
    if (length == 0) {
        return false;
    }
    *field = m_rest.substr(0, length);
    m_rest.remove_prefix(std::min(length + 1, m_rest.size()));
    return true;
}

bool TextScan::decimal(std::int32_t* field) {
    skipBlanks();
    return number(10, skipSign(), field);
}

bool TextScan::integer(std::int32_t* field) {
    skipBlanks();
    const bool negative = skipSign();
    const int base = skipPrefix() ? 16 : m_rest.starts_with('0') ? 8 : 10;
    return number(base, negative, field);
}

bool TextScan::number(int base, bool negative, std::int32_t* field) {
    std::uint32_t magnitude = 0;
    const std::uint32_t highest =
        base == 10 ? 0x7FFFFFFFU : 0xFFFFFFFFU;  // Bits may fill the word.
    const std::uint32_t limit = negative ? 0x80000000U : highest;
    if (!takeNumber(&m_rest, base, &magnitude) || magnitude > limit) {
        return false;
    }
    *field = static_cast<std::int32_t>(negative ? 0U - magnitude : magnitude);
    return true;
}

bool TextScan::window(HWND* field) {
    skipBlanks();
    const bool negative = skipSign();
    skipPrefix();
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

bool TextScan::skipPrefix() {
    const bool isThere = m_rest.starts_with("0x") || m_rest.starts_with("0X");
    if (isThere) {
        m_rest.remove_prefix(2);
    }
    return isThere;
}

std::string_view TextScan::rest() {
    skipBlanks();
    return m_rest;
}

HWND scanWindow(std::string_view text) {
    HWND window = 0;
    return TextScan(text).window(&window) ? window : 0;
}

}  // namespace juntora
