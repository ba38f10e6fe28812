#include "screen/DesktopView.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include <QFile>
#include <QPixmap>

#include "platform/desktop/window.h"

namespace juntora::screen {
namespace {

/// Windows are not nested, nor own each other, deeper than this.
constexpr int DEEPEST = 16;

/// A top-level window and what is in it.
struct Group {
    ViewedWindow top;
    std::vector<ViewedWindow> controls;
    int depth = 0;  ///< How many windows it stays above, one above the other.
};

std::vector<Group> groupsOf(const std::vector<ViewedWindow>& viewed) {
    std::vector<Group> groups;
    for (const ViewedWindow& window : viewed) {
        if (window.parent == 0) {
            groups.push_back({window, {}, 0});
        } else if (!groups.empty()) {
            groups.back().controls.push_back(window);
        }
    }
    return groups;
}

/// What a window stays above has to be there first.
void putOwnersFirst(std::vector<Group>& groups) {
    std::map<HWND, HWND> owners;
    for (const Group& group : groups) {
        owners[group.top.window] = group.top.owner;
    }
    for (Group& group : groups) {
        for (auto at = owners.find(group.top.owner); at != owners.end() && group.depth < DEEPEST;
             at = owners.find(at->second)) {
            ++group.depth;
        }
    }
    std::ranges::stable_sort(groups, {}, &Group::depth);
}

/// The controls as they are in the top-level window: what is deeper in it depends on what it is in.
std::vector<ViewedWindow> withinTop(const std::vector<ViewedWindow>& controls) {
    std::map<HWND, const ViewedWindow*> all;
    for (const ViewedWindow& control : controls) {
        all[control.window] = &control;
    }
    std::vector<ViewedWindow> result = controls;
    for (ViewedWindow& control : result) {
        auto parent = all.find(control.parent);
        for (int depth = 0; parent != all.end() && depth < DEEPEST; ++depth) {
            const ViewedWindow& around = *parent->second;
            control.place = {
                control.place.left + around.place.left, control.place.top + around.place.top,
                control.place.right + around.place.left, control.place.bottom + around.place.top};
            control.style &= around.style | ~WS_VISIBLE;
            control.style |= around.style & WS_DISABLED;
            control.changes += around.changes;
            parent = all.find(around.parent);
        }
    }
    return result;
}

}  // namespace

void DesktopView::refresh() {
    const auto viewed = ViewWindows();
    if (!viewed) {
        return;  // What is shown stays until there is a look again.
    }
    m_frontmost = viewed->empty() ? 0 : viewed->front().window;
    std::vector<Group> groups = groupsOf(*viewed);
    putOwnersFirst(groups);
    std::set<HWND> there;
    for (const Group& group : groups) {
        there.insert(group.top.window);
        windowFor(group.top).update(group.top, withinTop(group.controls), shown(group.top.owner));
    }
    putAway(there);
    const HWND foreground = GetForegroundWindow();
    const auto front = std::ranges::find(*viewed, foreground, &ViewedWindow::window);
    if (front != viewed->end() && shown(foreground) != nullptr) {
        followForeground(*shown(foreground), front->order);
    }
}

/// A window that is only hidden keeps its place on the display.
void DesktopView::putAway(const std::set<HWND>& stillThere) {
    std::erase_if(m_windows, [](const auto& entry) { return !IsWindow(entry.first); });
    for (const auto& [window, top] : m_windows) {
        if (!stillThere.contains(window)) {
            top->putAway();
        }
    }
}

TopWindow& DesktopView::windowFor(const ViewedWindow& viewed) {
    std::unique_ptr<TopWindow>& window = m_windows[viewed.window];
    if (!window) {
        window = std::make_unique<TopWindow>(viewed);
    }
    return *window;
}

/// Null for one that is not shown.
TopWindow* DesktopView::shown(HWND window) const {
    const auto found = m_windows.find(window);
    return found == m_windows.end() || !found->second->isVisible() ? nullptr : found->second.get();
}

/// Whenever a program puts a window in front, even the one that was last: the person may have gone
/// to another program meanwhile.
void DesktopView::followForeground(TopWindow& window, std::int64_t order) {
    const bool isNew = window.window() != m_foreground || order != m_foregroundOrder;
    if (isNew && !window.isActiveWindow()) {
        window.bringToFront();
    }
    m_foreground = window.window();
    m_foregroundOrder = order;
}

TopWindow* DesktopView::find(HWND window) {
    refresh();
    return shown(window != 0 ? window : m_frontmost);
}

bool DesktopView::isComplete(HWND window) {
    const TopWindow* const top = find(window);
    return top == nullptr || top->isComplete();
}

LRESULT DesktopView::savePicture(HWND window, const char* file) {
    TopWindow* const top = find(window);
    if (top == nullptr) {
        return PICTURE_NO_WINDOW;
    }
    return top->grab().save(QFile::decodeName(file), "PNG") ? PICTURE_SAVED : PICTURE_NO_FILE;
}

}  // namespace juntora::screen
