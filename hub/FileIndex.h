// Finds the rows of a table by the file that they hold without a walk through it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "common/CaseBlind.h"
#include "hub/AppEntry.h"

namespace juntora {

/// Stands beside the table's list and is kept in step with it by AppTable alone. Files are looked
/// up without regard to case. Rows come and go with their files and change these while they stand
/// in the list, so each carries its age, by which all that is found here is in the list's own
/// order.
class FileIndex {
public:
    /// Rows with something in common, the newest first; never empty.
    using Rows = std::map<std::uint64_t, AppEntry*, std::greater<>>;

    /// Enters a row that has just come to the head of the list.
    void add(AppNode* node);
    /// Forgets a row, which must still be whole.
    void remove(AppEntry* row);
    /// Gives a row another file, an empty path for none.
    void setFile(AppEntry* row, const PathName& file);

    /// The rows that hold a file, the rows of a window without one; null if there are none.
    const Rows* holdersOf(const PathName& file) const;
    const Rows* idleOf(HWND window) const;

    /// Where a row stands in the list.
    AppNode* nodeOf(const AppEntry* row) const;
    /// Whether one row came later than another.
    bool isNewer(const AppEntry* row, const AppEntry* other) const;

private:
    struct Place {
        std::uint64_t age;
        AppNode* node;
    };
    void enter(std::uint64_t age, AppEntry* row);
    void leave(std::uint64_t age, const AppEntry* row);

    std::uint64_t m_nextAge = 0;
    std::unordered_map<const AppEntry*, Place> m_places;
    std::unordered_map<std::string, Rows, CaseBlindHash, CaseBlindEqual> m_holders;
    std::unordered_map<HWND, Rows> m_idle;
};

}  // namespace juntora
