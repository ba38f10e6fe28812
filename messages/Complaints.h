// What is wrong with a catalogue file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace juntora {

/// Keeps the first few of many: a file with more mistakes is one whose first ones are worth
/// reading, and one that was made to have millions takes no memory for them.
class Complaints {
public:
    static constexpr std::size_t MOST_KEPT = 8;

    /// `offset` is the mistake's place, in bytes from the file's start. `text` has no point at its
    /// end.
    void add(std::size_t offset, const std::string& text);

    std::size_t count() const { return m_count; }

    /// A text for each that is kept, with the file's path and the line, and one for all others.
    /// `bytes` are the file's.
    std::vector<std::string> told(const std::string& path, std::string_view bytes) const;

private:
    struct Complaint {
        std::size_t offset;
        std::string text;
    };

    std::vector<Complaint> m_kept;
    std::size_t m_count = 0;
};

}  // namespace juntora
