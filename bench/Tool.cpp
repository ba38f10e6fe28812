#include "bench/Tool.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"

namespace juntora::bench {
namespace {

constexpr char TOOL_CLASS[] = "BenchTool";
constexpr char PLANCHET_MUTEX[] = "TarvexVoltaraPlanchetFindWnd16.6.0";
constexpr UINT COUNT_REQUEST = WM_APP;
constexpr int WRITE = 2;

ipc* g_link = nullptr;
int g_received = 0;

LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    IpcMessage* record = nullptr;
    int opcode = 0;
    if (g_link != nullptr && ipcReceive(message, wParam, lParam, &record, &opcode) != 0) {
        const int result = g_link->onRequest(opcode, record);
        ipcRelease(record);
        return result;
    }
    return message == COUNT_REQUEST ? g_received : DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

Hub::Hub() : m_planchet(CreateMutexA(false, PLANCHET_MUTEX)), m_process("juntora") {
    while (FindWindowA(HUB_WINDOW_CLASS, HUB_WINDOW_TITLE) == 0) {
        if (!m_process.isRunning()) {
            throw std::runtime_error("the hub does not start");
        }
        Sleep(1);
    }
}

HWND makeToolWindow() {
    const WNDCLASSA windowClass{0, handle, 0, 0, 0, TOOL_CLASS};
    RegisterClassA(&windowClass);
    return CreateWindowExA(0, TOOL_CLASS, "", 0, 0, 0, 0, 0, 0, 0);
}

Link::Link(const char* name) : ipc(name, makeToolWindow(), 0, nullptr, 0, 0) { g_link = this; }

int Link::onRequest(int, IpcMessage* record) {
    if (std::atoi(record->text) != g_received) {
        std::fprintf(stderr, "record %d came as number %d\n", std::atoi(record->text), g_received);
        std::exit(1);
    }
    ++g_received;
    return 1;
}

Receiver::Receiver()
    : m_process(test::OwnProgram(), {"--receiver"}),
      m_window(static_cast<HWND>(std::stoul(m_process.readLine().value_or("0"), nullptr, 16))) {}

int Receiver::received() {
    if (!m_process.isRunning()) {
        throw std::runtime_error("the receiver has ended");
    }
    return static_cast<int>(SendMessageA(m_window, COUNT_REQUEST, 0, 0));
}

int runReceiver() {
    const Link link("Receiver");
    if (!link.isOn()) {
        return 1;
    }
    std::printf("%x\n", ipcSelfId);
    std::fflush(stdout);
    MSG message{};
    while (GetMessageA(&message, 0, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    return 0;
}

std::string Rows::name(std::size_t index) { return "Row" + std::to_string(index); }

void Rows::grow(std::size_t count) {
    const HWND self = ipcSelfId;
    while (m_windows.size() < count) {
        const std::string text = name(m_windows.size()) + " " + std::to_string(IPC_VERSION);
        char reply[64];
        int capacity = sizeof reply;
        ipcSelfId = makeToolWindow();
        m_windows.push_back(ipcSelfId);
        if (ipcSend(IPC_SIGN_ON, text.c_str(), 0, reply, &capacity) != 1) {
            throw std::runtime_error("a row was refused");
        }
    }
    ipcSelfId = self;
}

void Rows::clear() {
    const HWND self = ipcSelfId;
    for (const HWND window : m_windows) {
        char reply[2];
        int capacity = sizeof reply;
        ipcSelfId = window;
        ipcSend(IPC_SIGN_OFF, nullptr, 0, reply, &capacity);
        DestroyWindow(window);
    }
    m_windows.clear();
    ipcSelfId = self;
}

std::string Files::path(int number) const {
    return m_folder + "/part " + std::to_string(number) + ".opj";
}

void Files::open(int number) const {
    int isFree = 0;
    if (ipcFileOpen(path(number).c_str(), WRITE, &isFree, nullptr) != 0) {
        throw std::runtime_error("a file that nobody holds was refused");
    }
}

void Files::close(int number) const { ipcFileClose(path(number).c_str(), WRITE); }

void Files::grow(int count) {
    while (m_held < count) {
        open(m_held++);
    }
}

void Files::clear() {
    while (m_held > 0) {
        close(--m_held);
    }
}

}  // namespace juntora::bench
