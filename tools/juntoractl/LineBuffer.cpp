#include "tools/juntoractl/LineBuffer.h"

#include <utility>

namespace juntora {

void LineBuffer::add(std::string_view bytes, const Taker& take) {
    for (std::size_t end = 0; (end = bytes.find('\n')) != std::string_view::npos;) {
        keep(bytes.substr(0, end));
        handOut(take);
        bytes.remove_prefix(end + 1);
    }
    keep(bytes);
}

void LineBuffer::finish(const Taker& take) {
    if (!m_line.empty() || m_isTooLong) {
        handOut(take);
    }
}

void LineBuffer::keep(std::string_view bytes) {
    if (m_line.size() + bytes.size() > m_limit) {
        m_isTooLong = true;
        m_line.clear();
    }
    if (!m_isTooLong) {
        m_line += bytes;
    }
}

void LineBuffer::handOut(const Taker& take) {
    const std::string line = std::exchange(m_line, {});
    const bool isTooLong = std::exchange(m_isTooLong, false);
    const bool hasReturn = !line.empty() && line.back() == '\r';
    take(std::string_view(line).substr(0, line.size() - (hasReturn ? 1 : 0)), isTooLong);
}

}  // namespace juntora
