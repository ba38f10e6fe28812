// A buffer of exactly as many bytes as an operation is told of: the sanitizers see the next one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace juntora::test {

class ExactBuffer {
public:
    explicit ExactBuffer(std::size_t size) : m_size(size), m_bytes(new char[size]) {
        std::memset(m_bytes.get(), '#', size);
    }
    /// With as much of the text and its NUL as goes in.
    ExactBuffer(std::size_t size, const std::string& text) : ExactBuffer(size) {
        std::memcpy(m_bytes.get(), text.c_str(), std::min(size, text.size() + 1));
    }
    char* data() { return m_bytes.get(); }
    int size() const { return static_cast<int>(m_size); }
    /// All bytes up to the first NUL, or to the end.
    std::string text() const {
        const std::string_view all(m_bytes.get(), m_size);
        return std::string(all.substr(0, all.find('\0')));
    }
    bool isEnded() const { return text().size() < m_size; }

private:
    std::size_t m_size;
    std::unique_ptr<char[]> m_bytes;
};

}  // namespace juntora::test
