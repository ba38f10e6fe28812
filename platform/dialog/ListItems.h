// The lines of a list box, apart from any window.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace juntora::dialog {

/// How two lines collate: without regard to case, blanks and signs before digits before letters
/// before bytes above 127. Below, at or above 0; equal texts in different case give 0.
int CollateCaseBlind(std::string_view left, std::string_view right);

/// Texts by position. Sorted, they stand in collating order, and those that differ in case only in
/// the order of their bytes; a position is then found without a walk. The texts themselves stay
/// where they are: what moves when a line comes or goes is a number each.
class ListItems {
public:
    explicit ListItems(bool sorted) : m_isSorted(sorted), m_wantsSorted(sorted) {}

    std::size_t count() const { return m_order.size(); }
    /// `index` is below count().
    const std::string& at(std::size_t index) const { return m_texts[m_order[index]]; }

    /// Adds where the order wants it, at the end without one. Returns the position.
    std::size_t add(std::string_view text);
    /// Puts a line at a position of the caller's choice, at most count(), whatever the order. A
    /// sorted list is searched line by line from then on, until it is cleared.
    void insert(std::size_t index, std::string_view text);
    void remove(std::size_t index);
    void clear();

    /// The first line behind `after` (nothing: the first of all) that is the same without regard to
    /// case; behind the last line the search goes on at the top.
    std::optional<std::size_t> findExact(std::optional<std::size_t> after,
                                         std::string_view text) const;

private:
    std::optional<std::size_t> findSorted(std::size_t start, std::string_view text) const;
    std::optional<std::size_t> findInWalk(std::size_t start, std::string_view text) const;

    std::vector<std::uint32_t> m_order;  ///< Places in m_texts, by position.
    std::vector<std::string> m_texts;
    std::vector<std::uint32_t> m_free;  ///< Places in m_texts of lines that have gone.
    bool m_isSorted;
    const bool m_wantsSorted;
};

}  // namespace juntora::dialog
