// A tool that tests start. What it does is the word in TOOL_DOES, for its arguments may be a hub's:
//
//   start              starts the hub by itself and prints the outcome
//   attach             signs on, which starts the hub, and prints its name
//   quit               the same with a quit in its queue, whose code it prints too
//   ask CALLS PAUSE    asks the hub the same thing many times, PAUSE microseconds apart, once a
//   line
//                      has come on its input
//   receive COUNT      prints its window and ends when so many records have come in order
//   send COUNT WINDOW  sends them as fast as it can
#include <cstdio>
#include <cstdlib>
#include <string>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/process.h"
#include "tests/support/Markers.h"

namespace juntora::test {
namespace {

class Tool : public ipc {
public:
    explicit Tool(const char* name, int showErrors = 0)
        : ipc(name, makeWindow(), 0, nullptr, 0, showErrors) {
        s_tool = this;
    }
    int onRequest(int opcode, IpcMessage* record) override {
        received += opcode == IPC_COMMAND && std::atoi(record->text) == received ? 1 : 0;
        return 1;
    }

    int received = 0;  ///< In order; one out of order is never counted, nor is what follows it.

private:
    static HWND makeWindow() {
        const WNDCLASSA windowClass{0, handle, 0, 0, 0, "TestTool"};
        RegisterClassA(&windowClass);
        return CreateWindowExA(0, "TestTool", "", 0, 0, 0, 0, 0, 0, 0);
    }
    static LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        IpcMessage* record = nullptr;
        int opcode = 0;
        if (s_tool == nullptr || ipcReceive(message, wParam, lParam, &record, &opcode) == 0) {
            return DefWindowProcA(window, message, wParam, lParam);
        }
        const int result = s_tool->onRequest(opcode, record);
        ipcRelease(record);
        return result;
    }

    static Tool* s_tool;
};
Tool* Tool::s_tool = nullptr;

int attach(bool hasQuit) {
    if (hasQuit) {
        PostQuitMessage(3);
    }
    const Tool tool("Starter", 1);
    MSG message{};
    const bool quitsAgain = hasQuit && GetMessageA(&message, 0, 0, 0) == 0;
    std::printf("[%s] %d\n", tool.m_pName, quitsAgain ? static_cast<int>(message.wParam) : -1);
    return 0;
}

int askOften(int calls, DWORD pause) {
    int alive = 0;
    for (int i = 0; i < calls; ++i) {
        if (pause != 0) {
            SleepMicroseconds(pause);
        }
        alive += ipcIsAlive(ipcSelfId);
    }
    return alive;
}

int ask(int calls, DWORD pause) {
    const Tool tool("Client");
    std::printf("signed on\n");
    std::fflush(stdout);
    std::getchar();  // The tracer is in place.
    askOften(calls / 10, pause);
    mark(MARKER_BEGIN);
    const int alive = askOften(calls, pause);
    mark(MARKER_END);
    return alive == calls ? 0 : 1;
}

int receive(int count) {
    const Tool tool("Receiver");
    std::printf("%x\n", ipcSelfId);
    std::fflush(stdout);
    MSG message{};
    while (tool.received < count && GetMessageA(&message, 0, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    return tool.received == count ? 0 : 1;
}

int send(int count, HWND target) {
    const Tool tool("Flooder");
    for (int i = 0; i < count; ++i) {
        // 0: the block was full for a while, and the record is still this tool's to send.
        while (ipcCommand(std::to_string(i).c_str(), target) == 0) {
            if (!IsWindow(target)) {
                return 1;
            }
        }
    }
    std::printf("sent\n");
    return 0;
}

int run(const std::string& does, char** arguments) {
    if (does == "start") {
        std::printf("%d\n", ipcStartHub(0));
        return 0;
    }
    if (does == "attach" || does == "quit") {
        return attach(does == "quit");
    }
    const int count = std::atoi(arguments[0]);
    if (does == "ask") {
        return ask(count, static_cast<DWORD>(std::atoi(arguments[1])));
    }
    return does == "receive"
               ? receive(count)
               : send(count, static_cast<HWND>(std::stoul(arguments[1], nullptr, 16)));
}

}  // namespace
}  // namespace juntora::test

int main(int argc, char** argv) {
    juntora::SetProgramArguments(argc, argv);
    return juntora::test::run(juntora::GetEnvironment("TOOL_DOES"), argv + 1);
}
