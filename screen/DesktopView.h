// The desktop's windows on the display.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>

#include "screen/TopWindow.h"

namespace juntora::screen {

/// Holds a window of the display for each that the desktop shows. For the toolkit's thread.
class DesktopView {
public:
    /// Brings everything to the desktop's present state.
    void refresh();

    /// Whether a window, the one in front for 0, shows all that is to be seen of it.
    bool isComplete(HWND window);
    /// Saves a picture of a window, of the one in front for 0; a PictureResult.
    LRESULT savePicture(HWND window, const char* file);

private:
    TopWindow& windowFor(const ViewedWindow& viewed);
    TopWindow* shown(HWND window) const;
    TopWindow* find(HWND window);
    void putAway(const std::set<HWND>& stillThere);
    void followForeground(TopWindow& window, std::int64_t order);

    std::map<HWND, std::unique_ptr<TopWindow>> m_windows;
    HWND m_frontmost = 0;
    HWND m_foreground = 0;
    std::int64_t m_foregroundOrder = 0;
};

}  // namespace juntora::screen
