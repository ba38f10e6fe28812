#include "tests/death/LayerScenario.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "platform/desktop/desktop.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"

namespace juntora::test {
namespace {

constexpr DWORD VICTIM_STYLE = WS_CAPTION | WS_SYSMENU;
constexpr RECT VICTIM_PLACE{11, 22, 311, 222};

std::string textOf(HWND window, int (*read)(HWND, char*, int)) {
    std::array<char, 600> text{};
    read(window, text.data(), text.size());
    return text.data();
}

/// A window that others can find is one with all its marks.
void checkWhole(Findings& findings, HWND window, bool mayBeOther) {
    const std::string which = "window " + std::to_string(window);
    const std::string name = textOf(window, GetClassNameA);
    const std::string title = textOf(window, GetWindowTextA);
    RECT place{};
    GetWindowRect(window, &place);
    if (name == VICTIM_CLASS) {
        findings.expect(title == VICTIM_TITLE, which + " has the title \"" + title + "\"");
        findings.expect(GetWindowStyle(window) == VICTIM_STYLE, which + " has another style");
        findings.expect(place.left == VICTIM_PLACE.left && place.bottom == VICTIM_PLACE.bottom,
                        which + " lies elsewhere");
    } else if (name == SURVIVOR_CLASS || !mayBeOther) {
        findings.expect(name == SURVIVOR_CLASS && title == SURVIVOR_TITLE,
                        which + " is a \"" + name + "\" with the title \"" + title + "\"");
    }
}

struct Census {
    Findings* findings;
    const Board* board;
    HWND survivor;
    bool expectsOthers;
    bool sawSurvivor;
};

BOOL visit(HWND window, LPARAM context) {
    auto* census = reinterpret_cast<Census*>(context);
    checkWhole(*census->findings, window, census->expectsOthers);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const auto owner = static_cast<pid_t>(process);
    census->findings->expect(owner != census->board->victim && owner != census->board->mender,
                             "window " + std::to_string(window) + " of the dead is still there");
    census->sawSurvivor = census->sawSurvivor || window == census->survivor;
    return 1;
}

}  // namespace

LayerScenario* LayerScenario::s_current = nullptr;

void inFreshProcess(Findings& findings, const std::function<void(Findings&)>& work) {
    std::array<int, 2> ends{};
    if (!findings.expect(pipe(ends.data()) == 0, "no pipe")) {
        return;
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        Findings own;
        work(own);
        [[maybe_unused]] const ssize_t told = write(ends[1], own.text().data(), own.text().size());
        std::exit(0);
    }
    close(ends[1]);
    std::array<char, 4096> text{};
    const ssize_t length = read(ends[0], text.data(), text.size());
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    findings.expect(length <= 0,
                    "a new process: " + std::string(text.data(), std::max<long>(length, 0)));
    findings.expect(status == 0, "a new process ended with status " + std::to_string(status));
}

LRESULT LayerScenario::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return s_current->onMessage(window, message, wParam, lParam);
}

LRESULT LayerScenario::onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return DefWindowProcA(window, message, wParam, lParam);
}

void LayerScenario::registerClasses() {
    s_current = this;
    for (const char* name : {VICTIM_CLASS, SURVIVOR_CLASS}) {
        const WNDCLASSA windowClass{0, &procedure, 0, 0, 0, name};
        RegisterClassA(&windowClass);
    }
}

void LayerScenario::settle() {
    registerClasses();
    const HWND window = CreateWindowExA(0, SURVIVOR_CLASS, SURVIVOR_TITLE, 0, 0, 0, 10, 10, 0, 0);
    if (window == 0) {
        throw std::runtime_error("no window for the survivor");
    }
    board->survivorWindow = window;
    DispatchWaitingMessages();  // From here on the thread counts as idle.
}

int LayerScenario::descriptor() { return GetQueueDescriptor(); }

void LayerScenario::serve() { DispatchWaitingMessages(); }

void LayerScenario::prepare() {
    registerClasses();
    if (!OpenDesktop()) {
        throw std::runtime_error("the victim cannot open the desktop");
    }
}

void LayerScenario::prepareMending() { LayerScenario::prepare(); }

HWND LayerScenario::makeVictimWindow(HWND parent) {
    const HWND window =
        CreateWindowExA(0, VICTIM_CLASS, VICTIM_TITLE, VICTIM_STYLE | (parent != 0 ? WS_CHILD : 0),
                        VICTIM_PLACE.left, VICTIM_PLACE.top, VICTIM_PLACE.right - VICTIM_PLACE.left,
                        VICTIM_PLACE.bottom - VICTIM_PLACE.top, parent, 0);
    board->victimWindow = window;
    return window;
}

void LayerScenario::mend() {
    FindWindowA(VICTIM_CLASS, VICTIM_TITLE);
    IsWindow(static_cast<HWND>(board->victimWindow.load()));
    makeVictimWindow();
}

void LayerScenario::check(Findings& findings) {
    checkWindows(findings);
    checkMaking(findings);
    look(findings);
}

void LayerScenario::checkWindows(Findings& findings) {
    const auto dead = static_cast<HWND>(board->victimWindow.load());
    findings.expect(dead == 0 || !IsWindow(dead), "the dead one's window is still a window");
    findings.expect(FindWindowA(VICTIM_CLASS, VICTIM_TITLE) == 0, "the dead one's window is found");
    findings.expect(FindWindowA(VICTIM_CLASS, nullptr) == 0,
                    "the dead one's window is found by its class");
    Census census{&findings, board, survivorWindow(), expectsOthers(), false};
    EnumWindows(&visit, reinterpret_cast<LPARAM>(&census));
    findings.expect(census.sawSurvivor, "the survivor's window is not among all windows");
    findings.expect(FindWindowA(SURVIVOR_CLASS, SURVIVOR_TITLE) == survivorWindow(),
                    "the survivor's window is not found");
    findings.expect(GetWindow(survivorWindow(), GW_CHILD) == 0,
                    "the survivor's window has a child");
}

void LayerScenario::checkMaking(Findings& findings) {
    const HWND window = makeVictimWindow();
    if (!findings.expect(window != 0, "no window can be made")) {
        return;
    }
    checkWhole(findings, window, false);
    findings.expect(FindWindowA(VICTIM_CLASS, VICTIM_TITLE) == window, "a new window is not found");
    findings.expect(DestroyWindow(window) != 0, "a new window cannot be destroyed");
    findings.expect(FindWindowA(VICTIM_CLASS, VICTIM_TITLE) == 0, "a destroyed window is found");
}

}  // namespace juntora::test
