#include "tools/toolkit/ToolWindow.h"

#include "platform/desktop/message.h"

namespace juntora {
namespace {

constexpr std::uintptr_t TIMER_ID = 1;

}  // namespace

class ToolWindow::Link : public ipc {
public:
    Link(ToolWindow* owner, const char* baseName, bool showErrors)
        : ipc(baseName, owner->m_window, 0, nullptr, 0, showErrors ? 1 : 0), m_owner(owner) {}

    int onRequest(int opcode, IpcMessage* record) override {
        const int result = m_owner->onRecord(opcode, *record);
        if (record->replyLength > 0) {
            record->replyLength =
                0;  // There is no answer, and the text is not to be taken for one.
        }
        return result;
    }

private:
    ToolWindow* m_owner;
};

ToolWindow::ToolWindow(const char* windowClass, const char* title) {
    WNDCLASSA description{};
    description.lpfnWndProc = procedure;
    description.lpszClassName = windowClass;
    RegisterClassA(&description);
    m_window = CreateWindowExA(0, windowClass, title, WS_POPUP, 0, 0, 0, 0, 0, 0, this);
}

ToolWindow::~ToolWindow() {
    signOff();
    if (m_window != 0) {
        SetWindowUserData(m_window, 0);
        DestroyWindow(m_window);
    }
}

ToolWindow::SignOn ToolWindow::signOn(const char* baseName, bool showErrors) {
    m_link = std::make_unique<Link>(this, baseName, showErrors);
    m_name = m_link->m_pName;
    m_hub = ipcHubWindow;
    if (!m_name.empty()) {
        return SignOn::DONE;
    }
    const SignOn outcome = ipcFindHub() != 0 ? SignOn::REFUSED : SignOn::NO_HUB;
    signOff();
    return outcome;
}

void ToolWindow::signOff() {
    // What arrives during the sign-off finds no link any more.
    const std::unique_ptr<ipc> leaving = std::move(m_link);
}

bool ToolWindow::hubIsThere() const { return ipcFindHub() != 0 && ipcHubWindow == m_hub; }

int ToolWindow::run() {
    MSG message{};
    int outcome = 1;
    while ((outcome = GetMessageA(&message, 0, 0, 0)) > 0) {
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    signOff();
    return outcome == 0 ? static_cast<int>(message.wParam) : 1;
}

void ToolWindow::startTimer(DWORD milliseconds) {
    SetTimer(m_window, TIMER_ID, milliseconds, nullptr);
}

LRESULT ToolWindow::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) {
        SetWindowUserData(window, lParam);
    }
    auto* self = reinterpret_cast<ToolWindow*>(GetWindowUserData(window));
    if (self == nullptr || self->m_window == 0) {
        return DefWindowProcA(window, message, wParam, lParam);
    }
    return self->onMessage(message, wParam, lParam);
}

LRESULT ToolWindow::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    IpcMessage* record = nullptr;
    int opcode = 0;
    if (m_link != nullptr && ipcReceive(message, wParam, lParam, &record, &opcode)) {
        return serve(opcode, record);
    }
    switch (message) {
        case WM_TIMER:
            onTimer();
            return 0;
        case WM_CLOSE:
            onClose();
            return 0;
        case WM_DESTROY:
            m_window = 0;
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcA(m_window, message, wParam, lParam);
    }
}

LRESULT ToolWindow::serve(int opcode, IpcMessage* record) {
    ++m_recordsInHand;
    const int result = m_link->onRequest(opcode, record);
    --m_recordsInHand;
    ipcRelease(record);
    return result;
}

void ToolWindow::onClose() {
    if (m_recordsInHand > 0) {
        PostMessageA(m_window, WM_CLOSE, 0, 0);  // The record lies in the block, which would close.
        return;
    }
    signOff();
    DestroyWindow(m_window);
}

}  // namespace juntora
