// The window of the desktop by which programs find the screen and ask it for pictures.
#pragma once

#include <memory>

#include <QSocketNotifier>

#include "platform/types.h"

namespace juntora::screen {

class DesktopView;

/// Hidden, and served from the toolkit's own loop. One in a process.
class ScreenWindow {
public:
    explicit ScreenWindow(DesktopView& view);
    ~ScreenWindow();
    ScreenWindow(const ScreenWindow&) = delete;
    ScreenWindow& operator=(const ScreenWindow&) = delete;

    /// False where the desktop has no room for it.
    bool isOk() const { return m_window != 0; }
    /// Whether any other program has a window on the desktop.
    bool hasCompany() const;

private:
    HWND m_window = 0;
    std::unique_ptr<QSocketNotifier> m_mail;
};

}  // namespace juntora::screen
