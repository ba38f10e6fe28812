// The lines of the monitor's list box, as the hub writes and finds them.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "common/CaseBlind.h"
#include "platform/types.h"

namespace juntora {

class CListBox;

/// Writes to a sorted list box, which keeps the order. The window and the file of each line are
/// held beside it, so that a line is found by them without reading the list, and two files that are
/// shown under one name are told apart. Lines that others put into the box are not touched. For the
/// thread that owns the box.
class ActivityList {
public:
    /// The box is not owned; it may get its window later, but before the first line.
    explicit ActivityList(CListBox* listBox) : m_pListBox(listBox) {}

    /// Adds a line; `file` is the full path of the file in it, empty without one.
    void add(const std::string& line, HWND window, std::string_view file);

    /// Removes one line of the window: of those for the file (null: of all) the one that stands
    /// last in the box. An empty path is no file. Paths compare without regard to case. Returns
    /// whether there was one.
    bool remove(HWND window, const std::string_view* file);

private:
    /// The lines of a window by their files.
    using Lines = std::unordered_multimap<std::string, std::string, CaseBlindHash, CaseBlindEqual>;

    int lastPosition(const std::string& line) const;

    CListBox* m_pListBox;
    std::unordered_map<HWND, Lines> m_windows;
};

}  // namespace juntora
