#include "tests/screen/Display.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "tests/support/HubProcess.h"

namespace juntora::test {
namespace {

constexpr char ANY_PLACE[] = "/usr/bin/";

std::string program(const char* name) { return std::string(ANY_PLACE) + name; }

std::string exactly(const std::string& title) { return "^" + title + "$"; }

/// The window manager's own settings but for one: a window that flies to its place cannot be
/// clicked on meanwhile. Returns the file.
std::string managerSettings(const std::string& folder) {
    std::ifstream usual("/etc/xdg/openbox/rc.xml");
    std::string text{std::istreambuf_iterator<char>(usual), {}};
    const std::string animated = "<animateIconify>yes<";
    if (const auto at = text.find(animated); at != std::string::npos) {
        text.replace(at, animated.size(), "<animateIconify>no<");
    }
    std::string file = folder + "/openbox.xml";
    std::ofstream(file) << text;
    return file;
}

}  // namespace

Display::Display(const std::string& folder)
    : m_panel(folder),
      m_manager(program("openbox"), {"--sm-disable", "--config-file", managerSettings(folder)},
                {environment(), "", true}) {
    EXPECT_NE("", m_server.name()) << "no display came up";
    // Windows that come before the window manager are never managed as they ask.
    EXPECT_TRUE(waitFor([this] { return std::atoi(hand({"get_num_desktops"}).c_str()) > 0; }));
}

std::vector<std::string> Display::environment() const {
    return {"DISPLAY=" + m_server.name(),
            "DBUS_SESSION_BUS_ADDRESS=" + m_panel.address(),
            "JUNTORA_SCREEN=",
            "QT_QPA_PLATFORM=xcb",
            "QT_STYLE_OVERRIDE=Fusion",
            "QT_SCALE_FACTOR=1"};
}

std::string Display::hand(std::vector<std::string> words,
                          ChildProcess::Milliseconds timeout) const {
    ChildProcess tool(program("xdotool"), std::move(words), {environment(), "", true});
    tool.wait(timeout);
    return tool.readAll(ChildProcess::Milliseconds(0));
}

std::string Display::visibleWindow(const std::string& title) const {
    // A search that meets a window on its way out ends without a result.
    std::string window;
    waitFor([&] {
        std::istringstream found(hand({"search", "--onlyvisible", "--name", exactly(title)}));
        found >> window;
        return !window.empty();
    });
    return window;
}

bool Display::shows(const std::string& title) const {
    return !hand({"search", "--onlyvisible", "--name", exactly(title)}).empty();
}

bool Display::has(const std::string& title) const {
    return !hand({"search", "--name", exactly(title)}).empty();
}

void Display::click(const std::string& window, int button, int x, int y, int width,
                    int height) const {
    activate(window);  // It has come to its place then.
    std::map<std::string, int> shape = geometry(window);
    hand({"mousemove", "--window", window, std::to_string(shape["WIDTH"] * x / width),
          std::to_string(shape["HEIGHT"] * y / height), "click", std::to_string(button)});
}

void Display::move(const std::string& window, int x, int y) const {
    hand({"windowmove", "--sync", window, std::to_string(x), std::to_string(y)});
}

std::pair<int, int> Display::place(const std::string& window) const {
    std::map<std::string, int> shape = geometry(window);
    return {shape["X"], shape["Y"]};
}

std::map<std::string, int> Display::geometry(const std::string& window) const {
    std::map<std::string, int> shape;
    std::istringstream lines(hand({"getwindowgeometry", "--shell", window}));
    for (std::string line; std::getline(lines, line);) {
        if (const auto sign = line.find('='); sign != line.npos) {
            shape[line.substr(0, sign)] = std::atoi(line.c_str() + sign + 1);
        }
    }
    return shape;
}

void Display::press(const std::string& key) const { hand({"key", key}); }

void Display::activate(const std::string& window) const {
    hand({"windowactivate", "--sync", window});
}

}  // namespace juntora::test
