#include "tests/support/HubProcess.h"

#include <chrono>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"

namespace juntora::test {
namespace {

constexpr char TOOL_CLASS[] = "HubProcessTool";

LRESULT toolProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SYSCOMMAND && wParam == SC_CLOSE) {
        closedTools().push_back({window, GetForegroundWindow() == window});
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

/// Sends a record in the name of `tool`.
int sendAs(HWND tool, int opcode, const std::string& text) {
    ipcSelfId = tool;
    char reply[80];
    int capacity = sizeof reply;
    return ipcSend(opcode, text.c_str(), 0, reply, &capacity);
}

}  // namespace

std::vector<Closed>& closedTools() {
    static std::vector<Closed> all;
    return all;
}

bool waitFor(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + ChildProcess::PATIENCE;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        DispatchWaitingMessages();
        Sleep(1);
    }
    return true;
}

HubProcess::HubProcess()
    : m_planchetMutex(CreateMutexA(false, "TarvexVoltaraPlanchetFindWnd16.6.0")) {
    const WNDCLASSA tool{0, toolProcedure, 0, 0, 0, TOOL_CLASS};
    RegisterClassA(&tool);
}

HubProcess::~HubProcess() {
    ipcMemClose();
    releasePlanchet();
}

void HubProcess::releasePlanchet() {
    if (m_planchetMutex) {
        CloseHandle(m_planchetMutex);
        m_planchetMutex = nullptr;
    }
}

void HubProcess::startHub(std::vector<std::string> arguments, const std::string& program,
                          const std::vector<std::string>& environment) {
    m_hub.emplace(program, std::move(arguments), ChildProcess::Options{environment, "", true});
    ASSERT_TRUE(waitFor([] { return hubWindow() != 0 && listBox() != 0; }));
    ASSERT_TRUE(ipcObserve(GetDesktopWindow()));
    ASSERT_TRUE(hubGoesOn());
}

HWND HubProcess::hubWindow() { return FindWindowA(HUB_WINDOW_CLASS, HUB_WINDOW_TITLE); }
HWND HubProcess::mainDialog() { return FindWindowA("#32770", HUB_WINDOW_TITLE); }
HWND HubProcess::monitor() { return FindWindowA("#32770", "Application Activity"); }
HWND HubProcess::listBox() { return GetDlgItem(monitor(), 1001); }

HWND HubProcess::makeTool() { return CreateWindowExA(0, TOOL_CLASS, "", 0, 0, 0, 0, 0, 0, 0); }

bool HubProcess::signOn(HWND tool, const std::string& name) {
    return sendAs(tool, IPC_SIGN_ON, name + " " + std::to_string(IPC_VERSION)) == 1;
}

HWND HubProcess::attach(const std::string& name) {
    const HWND tool = makeTool();
    EXPECT_TRUE(signOn(tool, name));
    return tool;
}

void HubProcess::signOff(HWND tool) { EXPECT_EQ(sendAs(tool, IPC_SIGN_OFF, ""), 1); }

int HubProcess::command(HWND tool, const char* word) {
    ipcSelfId = tool;
    return ipcPost(IPC_COMMAND, word, 0);
}

void HubProcess::tick() {
    constexpr WPARAM CLOCK = 1;
    SendMessageA(monitor(), WM_TIMER, CLOCK, 0);
}

std::optional<int> HubProcess::hubResult(ChildProcess::Milliseconds timeout) {
    return m_hub->wait(timeout);
}

bool HubProcess::hubGoesOn() const {
    // The hub can be found before it has made all of its windows.
    if (!waitFor([&] { return listBox() != 0; })) {
        return false;
    }
    // Posted behind all that came before, with an effect that can be seen from here.
    const HWND list = listBox();
    const DWORD before = GetWindowChangeCount(list);
    PostMessageA(list, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    return waitFor([&] { return GetWindowChangeCount(list) != before; }) &&
           IsWindow(hubWindow()) != 0;
}

}  // namespace juntora::test
