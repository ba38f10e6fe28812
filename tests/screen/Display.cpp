#include "tests/screen/Display.h"

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
    : m_server(program("Xvfb"),
               {"-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"}),
      m_name(":" + m_server.readLine().value_or("")),
      m_manager(program("openbox"), {"--sm-disable", "--config-file", managerSettings(folder)},
                {environment(), "", true}) {
    EXPECT_NE(":", m_name) << "no display came up";
    // Windows that come before the window manager are never managed as they ask.
    EXPECT_TRUE(waitFor([this] { return std::atoi(hand({"get_num_desktops"}).c_str()) > 0; }));
}

std::vector<std::string> Display::environment() const {
    return {"DISPLAY=" + m_name, "JUNTORA_SCREEN=", "QT_QPA_PLATFORM=xcb",
            "QT_STYLE_OVERRIDE=Fusion", "QT_SCALE_FACTOR=1"};
}

std::string Display::hand(std::vector<std::string> words,
                          ChildProcess::Milliseconds timeout) const {
    ChildProcess tool(program("xdotool"), std::move(words), {environment(), "", true});
    tool.wait(timeout);
    return tool.readAll(ChildProcess::Milliseconds(0));
}

std::string Display::visibleWindow(const std::string& title) const {
    std::istringstream found(hand({"search", "--sync", "--onlyvisible", "--name", exactly(title)}));
    std::string window;
    found >> window;
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
    int columns = 0;
    int rows = 0;
    std::istringstream lines(hand({"getwindowgeometry", "--shell", window}));
    for (std::string line; std::getline(lines, line);) {
        std::sscanf(line.c_str(), "WIDTH=%d", &columns);
        std::sscanf(line.c_str(), "HEIGHT=%d", &rows);
    }
    hand({"mousemove", "--window", window, std::to_string(columns * x / width),
          std::to_string(rows * y / height), "click", std::to_string(button)});
}

void Display::press(const std::string& key) const { hand({"key", key}); }

void Display::activate(const std::string& window) const {
    hand({"windowactivate", "--sync", window});
}

}  // namespace juntora::test
