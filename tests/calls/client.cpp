// A tool that asks the hub the same thing many times: calls_client CALLS PAUSE_MICROSECONDS.
#include <cstdio>
#include <cstdlib>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/calls/Markers.h"

namespace juntora::test {
namespace {

class Link : public ipc {
public:
    explicit Link(HWND window) : ipc("Client", window, 0, nullptr, 0, 0) {}
    int onRequest(int, IpcMessage*) override { return 0; }
};

int ask(int calls, DWORD pause) {
    int alive = 0;
    for (int i = 0; i < calls; ++i) {
        if (pause != 0) {
            SleepMicroseconds(pause);
        }
        alive += ipcIsAlive(ipcSelfId);
    }
    return alive;
}

int run(int calls, DWORD pause) {
    const WNDCLASSA windowClass{0, DefWindowProcA, 0, 0, 0, "CallsClient"};
    RegisterClassA(&windowClass);
    const Link link(CreateWindowExA(0, "CallsClient", "", 0, 0, 0, 0, 0, 0, 0));
    std::printf("signed on\n");
    std::fflush(stdout);
    std::getchar();  // The tracer is in place.
    ask(calls / 10, pause);
    mark(MARKER_BEGIN);
    const int alive = ask(calls, pause);
    mark(MARKER_END);
    return alive == calls ? 0 : 1;
}

}  // namespace
}  // namespace juntora::test

int main(int, char** argv) {
    return juntora::test::run(std::atoi(argv[1]), static_cast<juntora::DWORD>(std::atoi(argv[2])));
}
