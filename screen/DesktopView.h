// The desktop's windows on the display.
#pragma once

#include <map>
#include <memory>

#include "screen/TopWindow.h"

namespace juntora::screen {

/// Holds a window of the display for each that the desktop shows. For the toolkit's thread.
class DesktopView {
public:
    /// Brings everything to the desktop's present state.
    void refresh();

    /// Saves a picture of a window, of the one in front for 0; a PictureResult.
    LRESULT savePicture(HWND window, const char* file);

private:
    TopWindow& windowFor(const ViewedWindow& viewed);
    void followForeground();

    std::map<HWND, std::unique_ptr<TopWindow>> m_windows;
    HWND m_frontmost = 0;
    HWND m_foreground = 0;
};

}  // namespace juntora::screen
