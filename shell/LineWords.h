// The words of the hub's command line.
#pragma once

#include <string_view>

namespace juntora {

/// A word is what stands between double quotes, or a switch ("-" or "/" and one letter), or else
/// runs to the end of the line or to a blank that a "-" or "/" follows, trailing blanks not
/// counted. A word that is longer than LONGEST is read as several.
class LineWords {
public:
    static constexpr std::size_t LONGEST = 259;

    /// `line` must outlive the object.
    explicit LineWords(std::string_view line) : m_rest(line) {}

    /// Goes on to the next word; false at the end of the line.
    bool next();
    std::string_view word() const { return m_word; }

private:
    void take(std::size_t length);

    std::string_view m_rest;
    std::string_view m_word;
};

}  // namespace juntora
