#include "tests/hub/HubFixture.h"

#include <cstdio>
#include <cstring>
#include <map>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/dialog.h"

namespace juntora::test {
namespace {

constexpr char TOOL_CLASS[] = "HubTestTool";

constexpr int LIST_BOX = 1001;
constexpr DialogControl CONTROLS[] = {{LIST_BOX, "ListBox", "", LBS_SORT, 0, 0, 90, 90}};
constexpr DialogTemplate MONITOR{130, "", WS_POPUP, 0, 100, 100, "MS Sans Serif", 8, CONTROLS};

std::map<HWND, std::vector<std::string>> posted;

LRESULT toolProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != ipcMessageId || ipcMessageId == 0) {
        return DefWindowProcA(window, message, wParam, lParam);
    }
    IpcMessage* record = ipcMemAddress(lParam);
    EXPECT_NE(record, nullptr);
    // What a tool goes by when it gives the slot back, and where its text ends.
    EXPECT_EQ(record->replyLength, 0);
    EXPECT_NE(std::memchr(record->text, 0, sizeof record->text), nullptr);
    EXPECT_EQ(record->target, window);
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

HubTest::HubTest() {
    registerClasses();
    EXPECT_TRUE(m_window.CreateEx(0, HUB_WINDOW_CLASS, HUB_WINDOW_TITLE, WS_CHILD | WS_BORDER, 0, 0,
                                  0, 0, GetDesktopWindow(), 101));
    const HWND dialog = CreateDialogFromTemplate(
        MONITOR, 0, [](HWND, UINT, WPARAM, LPARAM) { return 0; }, 0);
    EXPECT_TRUE(m_listBox.SubclassWindow(GetDlgItem(dialog, LIST_BOX)));
    ipcSelfId = 0;
    m_pHub = std::make_unique<ipcDes>(m_window.m_hWnd, &m_table, &m_listBox, &m_bHadClient, 0, 0);
    EXPECT_NE(ipcMessageId, 0U);
    m_window.SetIpc(m_pHub.get());
}

HubTest::~HubTest() {
    m_window.SetIpc(nullptr);
    m_pHub.reset();
    for (const HWND tool : m_tools) {
        DestroyWindow(tool);
    }
    DestroyWindow(GetParent(m_listBox.m_hWnd));
    DestroyWindow(m_window.m_hWnd);
}

HWND HubTest::makeTool() {
    m_tools.push_back(CreateWindowExA(0, TOOL_CLASS, "", 0, 0, 0, 0, 0, 0, 0));
    EXPECT_NE(m_tools.back(), 0U);
    return m_tools.back();
}

int HubTest::send(HWND sender, int opcode, std::string_view text, int capacity, HWND target) {
    m_record = {target, sender, capacity, 0, 0, {}};
    text.copy(m_record.text, sizeof m_record.text);
    return sendRecord(opcode);
}

int HubTest::sendRecord(int opcode) {
    IpcMessage* slot = ipcMemAlloc(sizeof(IpcMessage));
    if (!slot) {
        ADD_FAILURE() << "no slot";
        return -1;
    }
    *slot = m_record;
    const auto result = static_cast<int>(SendMessageA(
        m_window.m_hWnd, ipcMessageId, static_cast<WPARAM>(opcode), ipcMemOffset(slot)));
    m_record = *slot;
    ipcMemFree(slot);
    return result;
}

HWND HubTest::attach(const std::string& name) {
    const HWND tool = makeTool();
    EXPECT_EQ(send(tool, IPC_SIGN_ON, name + " 117707"), 1) << name;
    return tool;
}

std::vector<std::string> HubTest::arrivals(HWND tool) {
    MSG message;
    while (PeekMessageA(&message, 0, ipcMessageId, ipcMessageId, PM_REMOVE)) {
        DispatchMessageA(&message);
    }
    return std::exchange(posted[tool], {});
}

std::vector<std::string> HubTest::lines() const {
    std::vector<std::string> lines(
        static_cast<std::size_t>(SendMessageA(m_listBox.m_hWnd, LB_GETCOUNT, 0, 0)));
    for (std::size_t index = 0; index < lines.size(); ++index) {
        char text[2000];
        SendMessageA(m_listBox.m_hWnd, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text));
        lines[index] = text;
    }
    return lines;
}

std::string HubTest::hex(HWND window) {
    char text[16];
    std::snprintf(text, sizeof text, "%x", window);
    return text;
}

bool HubTest::allSlotsFree() const {
    std::vector<IpcMessage*> slots(64);
    for (IpcMessage*& slot : slots) {
        slot = ipcMemAlloc(sizeof(IpcMessage));
    }
    const bool allFree = slots.back() != nullptr;
    for (IpcMessage* slot : slots) {
        ipcMemFree(slot);
    }
    return allFree;
}

}  // namespace juntora::test
