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

/// What a file may be called in a line: its display name, and its full text, for a file that had
/// another display name when the line was written.
struct FileTexts {
    std::string_view display;
    std::string_view full;
};

/// Writes to a sorted list box, which keeps the order. The window and the file of each line are
/// held beside it, so that a line is found by them without reading the list. Lines that others put
/// into the box are not touched. For the thread that owns the box.
class ActivityList {
public:
    /// The box is not owned; it may get its window later, but before the first line.
    explicit ActivityList(CListBox* listBox) : m_pListBox(listBox) {}

    /// Adds a line; `fileText` is the display name that it shows, empty without a file.
    void add(const std::string& line, HWND window, std::string_view fileText);

    /// Removes one line of the window: of those for the file (null: of all) the one that stands
    /// last in the box. A file without a text is no file. Names compare without regard to case.
    /// Returns whether there was one.
    bool remove(HWND window, const FileTexts* file);

private:
    /// The lines of a window by their file texts.
    using Lines = std::unordered_multimap<std::string, std::string, CaseBlindHash, CaseBlindEqual>;

    static std::vector<Lines::iterator> select(Lines& lines, const FileTexts* file);
    int lastPosition(const std::string& line) const;

    CListBox* m_pListBox;
    std::unordered_map<HWND, Lines> m_windows;
};

}  // namespace juntora
