#include "screen/DesktopView.h"

#include <set>

#include <QFile>
#include <QPixmap>

#include "platform/desktop/window.h"

namespace juntora::screen {

void DesktopView::refresh() {
    const std::vector<ViewedWindow> viewed = ViewWindows();
    std::set<HWND> there;
    m_frontmost = viewed.empty() ? 0 : viewed.front().window;
    for (auto at = viewed.begin(); at != viewed.end();) {
        const ViewedWindow& top = *at++;
        std::vector<ViewedWindow> controls;
        for (; at != viewed.end() && at->parent != 0; ++at) {
            controls.push_back(*at);
        }
        there.insert(top.window);
        TopWindow& window = windowFor(top);
        if (const auto owner = m_windows.find(top.owner); owner != m_windows.end()) {
            window.stayAbove(*owner->second);
        }
        window.update(top, controls);
    }
    std::erase_if(m_windows, [&](const auto& entry) { return !there.contains(entry.first); });
    followForeground();
}

TopWindow& DesktopView::windowFor(const ViewedWindow& viewed) {
    std::unique_ptr<TopWindow>& window = m_windows[viewed.window];
    if (!window) {
        window = std::make_unique<TopWindow>(viewed);
    }
    return *window;
}

void DesktopView::followForeground() {
    const HWND foreground = GetForegroundWindow();
    const auto window = m_windows.find(foreground);
    if (foreground != m_foreground && window != m_windows.end() &&
        !window->second->isActiveWindow()) {
        window->second->bringToFront();
    }
    m_foreground = foreground;
}

LRESULT DesktopView::savePicture(HWND window, const char* file) {
    refresh();
    const auto found = m_windows.find(window != 0 ? window : m_frontmost);
    if (found == m_windows.end()) {
        return PICTURE_NO_WINDOW;
    }
    return found->second->grab().save(QFile::decodeName(file), "PNG") ? PICTURE_SAVED
                                                                      : PICTURE_NO_FILE;
}

}  // namespace juntora::screen
