// What is wrong with a catalogue file.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace juntora {

/// Keeps the first few of many: a file with more mistakes is one whose first ones are worth
/// reading, and one that was made to have millions takes no memory for them.
class Complaints {
public:
    static constexpr std::size_t MOST_KEPT = 8;

    /// `make` returns the text, and is called only where it is kept.
    template <class Make>
    void add(const Make& make) {
        if (m_kept.size() < MOST_KEPT) {
            m_kept.push_back(make());
        }
        ++m_count;
    }

    std::size_t count() const { return m_count; }
    const std::vector<std::string>& kept() const { return m_kept; }

private:
    std::vector<std::string> m_kept;
    std::size_t m_count = 0;
};

}  // namespace juntora
