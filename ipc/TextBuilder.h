// The text of a request, built in a buffer of fixed size without the cost of a format.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace juntora {

/// @tparam Capacity  Bytes of the text, its NUL included.
template <std::size_t Capacity>
class TextBuilder {
public:
    TextBuilder& add(std::string_view text) {
        if (text.size() < Capacity - m_length) {
            std::memcpy(m_text + m_length, text.data(), text.size());
            m_length += text.size();
        } else {
            m_fits = false;
        }
        return *this;
    }

    /// In double quotes. A text with one in it has no place there.
    TextBuilder& addQuoted(std::string_view text) {
        m_fits = m_fits && text.find('"') == std::string_view::npos;
        return add("\"").add(text).add("\"");
    }
    TextBuilder& addDecimal(int number) { return addNumber(number, 10); }
    /// Lower case, without a prefix: a window as it travels.
    TextBuilder& addHex(std::uint32_t number) { return addNumber(number, 16); }

    /// The text, null when not all of it found room or could be quoted.
    const char* get() {
        m_text[m_length] = '\0';
        return m_fits ? m_text : nullptr;
    }

private:
    template <typename Number>
    TextBuilder& addNumber(Number number, int base) {
        char digits[16];
        const char* end = std::to_chars(digits, digits + sizeof digits, number, base).ptr;
        return add({digits, static_cast<std::size_t>(end - digits)});
    }

    char m_text[Capacity];
    std::size_t m_length = 0;
    bool m_fits = true;
};

}  // namespace juntora
