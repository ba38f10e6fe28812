// Text of a window or of the string table.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace juntora {

class CString {
public:
    CString() = default;
    CString(const char* text) : m_text(text ? text : "") {}
    CString(const char* text, int length) : m_text(text, static_cast<std::size_t>(length)) {}
    explicit CString(std::string text) : m_text(std::move(text)) {}

    operator const char*() const { return m_text.c_str(); }
    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }

    /// Takes a string of the table; empty, and false, if there is none.
    bool LoadString(int id);

private:
    std::string m_text;
};

}  // namespace juntora
