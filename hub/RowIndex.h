// Finds the rows of a table by window, unique name and base name without a walk through it.
#pragma once

#include <list>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "common/CaseBlind.h"
#include "hub/AppEntry.h"

namespace juntora {

/// Stands beside the table's list and is kept in step with it by AppTable alone. It holds the
/// list's nodes, not copies of rows, so that what it finds can serve as a cursor. Names are looked
/// up without regard to case; every look-up costs the same for ten rows and for ten thousand.
class RowIndex {
public:
    /// Nodes with something in common, the newest first; never empty.
    using Rows = std::list<AppNode*>;

    /// Enters a row that has just come to the head of the list.
    void add(AppNode* node);
    /// Forgets a row, which must still be whole.
    void remove(AppNode* node);

    /// Null if there is no such row.
    const Rows* ofWindow(HWND window) const;
    const Rows* ofName(std::string_view name) const;
    const Rows* ofBaseName(std::string_view baseName) const;

    /// One above the highest instance number among the rows of a base name; 0 if there are none.
    int nextInstance(std::string_view baseName) const;

private:
    /// How many rows of a base name carry each instance number.
    using Instances = std::map<int, int>;
    struct Family {
        Rows rows;
        Instances instances;
    };
    /// Where a row stands in each of the lists below.
    struct Places {
        Rows::iterator byWindow;
        Rows::iterator byName;
        Rows::iterator byBaseName;
    };
    template <typename Value>
    using NameMap = std::unordered_map<std::string, Value, CaseBlindHash, CaseBlindEqual>;

    std::unordered_map<HWND, Rows> m_windows;
    NameMap<Rows> m_names;
    NameMap<Family> m_families;
    std::unordered_map<const AppNode*, Places> m_places;
};

}  // namespace juntora
