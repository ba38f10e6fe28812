// The text of the message service: a value of bytes, without a NUL among them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace juntora {

/// Positions and lengths count bytes, from 0. A null address is an empty text.
class NvString {
public:
    NvString() = default;
    explicit NvString(std::string_view text) : m_text(text) {}
    NvString(const NvString&) = default;
    NvString& operator=(const NvString&) = default;
    virtual ~NvString() = default;

    /// The text, ended by a NUL; good until the object changes.
    operator const char*() const { return m_text.c_str(); }
    /// The same for callers that take a text without const; not to be written to.
    char* getChar() const { return const_cast<char*>(m_text.c_str()); }
    int getLength() const { return static_cast<int>(m_text.size()); }

    void append(const char* text) { m_text.append(text ? text : ""); }
    void append(std::string_view text) { m_text.append(text); }
    void clear() { m_text.clear(); }
    void reserve(std::size_t bytes) { m_text.reserve(bytes); }

    /// The first place of `text` from position `from` on, without regard to the case of A to Z
    /// where `ignoreCase`; -1 if there is none.
    int find(const char* text, int from, bool ignoreCase) const;
    /// Sets `*part` to the characters from position `from` on, `count` at most. Positions and
    /// counts beyond the text's ends are moved to them.
    void substring(int from, int count, NvString* part) const;

private:
    std::string m_text;
};

}  // namespace juntora
