// What the fuzzers share. A fuzzer's entry is called with one input after another, in one process,
// by libFuzzer or by replay.cpp; what it finds wrong ends the process.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace juntora {

/// Says what does not hold, and ends the process.
inline void mustHold(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

/// Cuts an input into what a case is made of. There is always more: zeros and empty texts.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size)
        : m_left(reinterpret_cast<const char*>(data), size) {}

    std::uint8_t byte() {
        if (m_left.empty()) {
            return 0;
        }
        const auto first = static_cast<std::uint8_t>(m_left.front());
        m_left.remove_prefix(1);
        return first;
    }
    /// What stands before the next NUL, or before the end; the NUL is passed over.
    std::string text() {
        const std::size_t length = std::min(m_left.find('\0'), m_left.size());
        std::string text(m_left.substr(0, length));
        m_left.remove_prefix(std::min(length + 1, m_left.size()));
        return text;
    }
    /// All that is left, NULs and all.
    std::string rest() { return std::string(std::exchange(m_left, {})); }

private:
    std::string_view m_left;
};

}  // namespace juntora
