#include "tests/hub/BareHub.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/dialog.h"

namespace juntora::test {
namespace {

constexpr char TOOL_CLASS[] = "BareHubTool";

constexpr int LIST_BOX = 1001;
constexpr DialogControl CONTROLS[] = {{LIST_BOX, "ListBox", "", LBS_SORT, 0, 0, 90, 90}};
constexpr DialogTemplate MONITOR{130, "", WS_POPUP, 0, 100, 100, "MS Sans Serif", 8, CONTROLS};

// What a window's procedure throws ends the program: the test, or the fuzzer's input, has failed.
void require(bool isThere, const char* what) {
    if (!isThere) {
        std::fprintf(stderr, "BareHub: %s was expected\n", what);
        std::abort();
    }
}

std::map<HWND, std::vector<std::string>> posted;

LRESULT toolProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != ipcMessageId || ipcMessageId == 0) {
        return DefWindowProcA(window, message, wParam, lParam);
    }
    IpcMessage* record = ipcMemAddress(lParam);
    require(record != nullptr, "a slot");
    // What a tool goes by when it gives the slot back, and where its text ends.
    require(record->replyLength == 0, "the mark of a posted copy");
    require(std::memchr(record->text, 0, sizeof record->text) != nullptr, "a NUL in its text");
    require(record->target == window, "its own window as target");
    posted[window].push_back(std::to_string(wParam) + ' ' + std::to_string(record->sender) + ' ' +
                             record->text);
    ipcMemFree(record);
    return 1;
}

void registerClasses() {
    WNDCLASSA windowClass{};
    windowClass.lpfnWndProc = toolProcedure;
    windowClass.lpszClassName = TOOL_CLASS;
    RegisterClassA(&windowClass);
    windowClass.lpfnWndProc = AfxGetAfxWndProc();
    windowClass.lpszClassName = HUB_WINDOW_CLASS;
    RegisterClassA(&windowClass);
}

}  // namespace

BareHub::BareHub() {
    registerClasses();
    require(m_window.CreateEx(0, HUB_WINDOW_CLASS, HUB_WINDOW_TITLE, WS_CHILD | WS_BORDER, 0, 0, 0,
                              0, GetDesktopWindow(), 101),
            "the hub's window");
    const HWND dialog = CreateDialogFromTemplate(
        MONITOR, 0, [](HWND, UINT, WPARAM, LPARAM) { return 0; }, 0);
    require(m_listBox.SubclassWindow(GetDlgItem(dialog, LIST_BOX)), "the list box");
    ipcSelfId = 0;
    m_pHub = std::make_unique<ipcDes>(m_window.m_hWnd, &m_table, &m_listBox, &m_bHadClient, 0, 0);
    require(ipcMessageId != 0, "the requests' message");
    m_window.SetIpc(m_pHub.get());
}

BareHub::~BareHub() {
    m_window.SetIpc(nullptr);
    m_pHub.reset();
    for (const HWND tool : m_tools) {
        DestroyWindow(tool);
    }
    DestroyWindow(GetParent(m_listBox.m_hWnd));
    DestroyWindow(m_window.m_hWnd);
}

HWND BareHub::makeTool() {
    m_tools.push_back(CreateWindowExA(0, TOOL_CLASS, "", 0, 0, 0, 0, 0, 0, 0));
    require(m_tools.back() != 0, "a tool's window");
    return m_tools.back();
}

int BareHub::send(HWND sender, int opcode, std::string_view text, int capacity, HWND target) {
    m_record = {target, sender, capacity, 0, 0, {}};
    text.copy(m_record.text, sizeof m_record.text);
    return sendRecord(opcode);
}

int BareHub::sendRecord(int opcode) {
    IpcMessage* slot = ipcMemAlloc(sizeof(IpcMessage));
    require(slot != nullptr, "a free slot");
    *slot = m_record;
    const auto result = static_cast<int>(SendMessageA(
        m_window.m_hWnd, ipcMessageId, static_cast<WPARAM>(opcode), ipcMemOffset(slot)));
    m_record = *slot;
    ipcMemFree(slot);
    return result;
}

std::vector<std::string> BareHub::arrivals(HWND tool) {
    MSG message;
    while (PeekMessageA(&message, 0, ipcMessageId, ipcMessageId, PM_REMOVE)) {
        DispatchMessageA(&message);
    }
    return std::exchange(posted[tool], {});
}

std::vector<std::string> BareHub::lines() const {
    std::vector<std::string> lines(
        static_cast<std::size_t>(SendMessageA(m_listBox.m_hWnd, LB_GETCOUNT, 0, 0)));
    for (std::size_t index = 0; index < lines.size(); ++index) {
        char text[2000];
        SendMessageA(m_listBox.m_hWnd, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text));
        lines[index] = text;
    }
    return lines;
}

}  // namespace juntora::test
