// Input that comes in pieces, as lines.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace juntora {

/// A line that is longer than `limit` is passed over to its end and told as too long, once.
class LineBuffer {
public:
    using Taker = std::function<void(std::string_view line, bool isTooLong)>;

    explicit LineBuffer(std::size_t limit) : m_limit(limit) {}

    /// Hands out the lines that are whole, without "\n" or "\r\n".
    void add(std::string_view bytes, const Taker& take);
    /// Hands out a last line that no end has come for.
    void finish(const Taker& take);

private:
    void keep(std::string_view bytes);
    void handOut(const Taker& take);

    std::size_t m_limit;
    std::string m_line;
    bool m_isTooLong = false;
};

}  // namespace juntora
