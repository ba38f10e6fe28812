// Text of a window or of the string table.
#pragma once

#include <string>
#include <utility>

namespace juntora {

class CString {
public:
    CString() = default;
    CString(const char* text) : m_text(text ? text : "") {}
    explicit CString(std::string text) : m_text(std::move(text)) {}

    operator const char*() const { return m_text.c_str(); }
    bool IsEmpty() const { return m_text.empty(); }

    /// Takes a string of the table; empty, and false, if there is none.
    bool LoadString(int id);

private:
    std::string m_text;
};

}  // namespace juntora
