#include "hub/ActivityList.h"

#include <utility>

#include "framework/CListBox.h"

namespace juntora {

void ActivityList::add(const std::string& line, HWND window, std::string_view file) {
    if (m_pListBox->AddString(line.c_str()) >= 0) {
        m_windows[window].emplace(file, line);
    }
}

bool ActivityList::remove(HWND window, const std::string_view* file) {
    const auto found = m_windows.find(window);
    if (found == m_windows.end()) {
        return false;
    }
    Lines& lines = found->second;
    const auto [first, behind] =
        file ? lines.equal_range(*file) : std::pair(lines.begin(), lines.end());
    if (first == behind) {
        return false;
    }
    // Lines that differ only in case share a position. Which of their records goes does not matter:
    // nothing here or in the box tells them apart.
    Lines::iterator chosen = first;
    int position = -1;
    for (Lines::iterator candidate = first; candidate != behind; ++candidate) {
        if (const int last = lastPosition(candidate->second); last > position) {
            position = last;
            chosen = candidate;
        }
    }
    lines.erase(chosen);
    if (lines.empty()) {
        m_windows.erase(found);
    }
    return position >= 0 && m_pListBox->DeleteString(position) >= 0;
}

// The last of the lines that are equal to this one without regard to case: they stand together. The
// search starts behind the position it is given, and goes on at the top when it comes to the end.
int ActivityList::lastPosition(const std::string& line) const {
    int position = -1;
    for (;;) {
        const int found = m_pListBox->FindStringExact(position, line.c_str());
        if (found <= position) {
            return position;
        }
        position = found;
    }
}

}  // namespace juntora
