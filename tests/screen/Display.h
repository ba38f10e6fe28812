// A desktop session of a test's own, and hands to use it with.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/screen/Panel.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/DisplayServer.h"

namespace juntora::test {

/// A display in memory with a window manager and a panel. Its programs end with the object.
class Display {
public:
    /// `folder` takes what its programs need.
    explicit Display(const std::string& folder);

    /// What a program needs to be on it, as "NAME=VALUE".
    std::vector<std::string> environment() const;

    /// Waits until a window with this title is on the display and not minimised; its number, empty
    /// when none comes in time.
    std::string visibleWindow(const std::string& title) const;
    /// Whether a window with this title is there and not minimised, at this moment.
    bool shows(const std::string& title) const;
    /// Whether there is one at all.
    bool has(const std::string& title) const;

    /// Clicks into a window, at a place in dialog units of a dialog of `width` by `height` of them.
    void click(const std::string& window, int button, int x, int y, int width, int height) const;
    /// Presses a key, such as "Return" or "alt+F4", in the window that has the focus.
    void press(const std::string& key) const;
    void move(const std::string& window, int x, int y) const;
    /// Where the window's contents begin.
    std::pair<int, int> place(const std::string& window) const;
    /// Gives a window the focus.
    void activate(const std::string& window) const;

    Panel& panel() { return m_panel; }

    /// Ends the window manager alone.
    void endManager() { m_manager.kill(); }
    /// Ends the display itself, as a session's end does.
    void end() { m_server.end(); }

private:
    std::map<std::string, int> geometry(const std::string& window) const;
    std::string hand(std::vector<std::string> words,
                     ChildProcess::Milliseconds timeout = ChildProcess::PATIENCE) const;

    Panel m_panel;
    DisplayServer m_server;
    ChildProcess m_manager;
};

}  // namespace juntora::test
