// Text of a window, of a token or of the string table: a value of bytes, without a NUL among them.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace juntora {

/// Positions and lengths count bytes, from 0. Texts are shorter than 2 GiB.
class CString {
public:
    CString() = default;
    /// A copy of the text; empty for a null address.
    CString(const char* text) : m_text(text ? text : "") {}
    /// The first `length` characters of a text, which need not end behind them.
    CString(const char* text, int length) : m_text(text, static_cast<std::size_t>(length)) {}
    explicit CString(std::string text) : m_text(std::move(text)) {}

    /// The text, ended by a NUL; valid until the object changes.
    operator const char*() const { return m_text.c_str(); }
    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    /// The character at a position from 0 to the length; at the length it is the NUL.
    char operator[](int at) const { return m_text[static_cast<std::size_t>(at)]; }

    void Empty() { m_text.clear(); }
    /// Becomes the first `length` characters of a text, which need not end behind them.
    void SetString(const char* text, int length) {
        m_text.assign(text, static_cast<std::size_t>(length));
    }
    /// The text for writing, as long as it is. ReleaseBuffer with the length that the text has then
    /// must come before anything else is done with the object.
    char* GetBuffer() { return m_text.data(); }
    void ReleaseBuffer(int length) { m_text.resize(static_cast<std::size_t>(length)); }

    /// Takes a string of the table; empty, and false, if there is none.
    bool LoadString(int id);

    friend bool operator==(const CString& left, const CString& right) {
        return left.m_text == right.m_text;
    }
    friend bool operator==(const CString& left, const char* right) { return left.m_text == right; }

private:
    std::string m_text;
};

}  // namespace juntora
