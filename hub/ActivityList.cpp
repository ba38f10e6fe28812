#include "hub/ActivityList.h"

#include "framework/CListBox.h"

namespace juntora {

void ActivityList::add(const std::string& line, HWND window, std::string_view fileText) {
    if (m_pListBox->AddString(line.c_str()) >= 0) {
        m_windows[window].emplace(fileText, line);
    }
}

bool ActivityList::remove(HWND window, const FileTexts* file) {
    const auto found = m_windows.find(window);
    if (found == m_windows.end()) {
        return false;
    }
    Lines& lines = found->second;
    const std::vector<Lines::iterator> candidates = select(lines, file);
    if (candidates.empty()) {
        return false;
    }
    // Lines that differ only in case share a position. Which of their records goes does not matter:
    // nothing here or in the box tells them apart.
    Lines::iterator chosen = candidates.front();
    int position = -1;
    for (const Lines::iterator candidate : candidates) {
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

std::vector<ActivityList::Lines::iterator> ActivityList::select(Lines& lines,
                                                                const FileTexts* file) {
    std::vector<Lines::iterator> selected;
    const auto take = [&](Lines::iterator first, Lines::iterator behind) {
        for (auto it = first; it != behind; ++it) {
            selected.push_back(it);
        }
    };
    if (!file) {
        take(lines.begin(), lines.end());
        return selected;
    }
    const auto [first, behind] = lines.equal_range(file->display);
    take(first, behind);
    if (!equalCaseBlind(file->display, file->full)) {
        const auto [firstFull, behindFull] = lines.equal_range(file->full);
        take(firstFull, behindFull);
    }
    return selected;
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
