// Another process on the desktop, for the tests of the layer: it holds a window and does as the
// lines on its standard input say, one answer a line. Its message loop goes on in between.
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <sstream>
#include <string>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"
#include "tests/platform/PeerMessages.h"

namespace juntora::test {
namespace {

long g_posted = 0;
long g_lastPosted = -1;
bool g_inOrder = true;

LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case PEER_ADD:
            return static_cast<LRESULT>(wParam) + lParam;
        case PEER_COUNT:
            ++g_posted;
            g_inOrder = g_inOrder && lParam > g_lastPosted;
            g_lastPosted = lParam;
            return 0;
        case PEER_COUNTED:
            return g_inOrder ? g_posted : -1;
        case PEER_ASK_BACK:
            return SendMessageA(static_cast<HWND>(wParam), PEER_ADD, 1, lParam) * 2;
        case PEER_TELL_START:
            SetWindowTextA(
                window,
                (std::string(CommandLineTail()) + "|" + std::to_string(StartShowState())).c_str());
            return 1;
        case PEER_QUIT:
            PostQuitMessage(0);
            return 1;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}

struct Held {
    HANDLE handle = nullptr;
    volatile int* view = nullptr;
};

std::map<std::string, Held> g_held;

long open(const std::string& kind, const std::string& name, std::istringstream& rest) {
    Held held;
    long first = 0;
    long second = 0;
    rest >> first >> second;
    if (kind == "mutex") {
        held.handle = CreateMutexA(false, name.c_str());
    } else if (kind == "semaphore") {
        held.handle =
            CreateSemaphoreA(static_cast<LONG>(first), static_cast<LONG>(second), name.c_str());
    } else {
        held.handle = CreateFileMappingA(static_cast<std::size_t>(first), name.c_str());
    }
    const DWORD error = held.handle == nullptr ? 9999 : GetLastError();
    if (kind == "mapping" && held.handle != nullptr) {
        held.view =
            static_cast<volatile int*>(MapViewOfFile(held.handle, static_cast<std::size_t>(first)));
    }
    g_held[name] = held;
    return error;
}

long obey(const std::string& line) {
    std::istringstream words(line);
    std::string verb;
    std::string name;
    words >> verb >> name;
    Held& held = g_held[name];
    long number = 0;
    if (verb == "wait") {
        words >> number;
        return WaitForSingleObject(held.handle, static_cast<DWORD>(number));
    }
    if (verb == "release") {
        return ReleaseMutex(held.handle);
    }
    if (verb == "release-count") {
        return ReleaseSemaphore(held.handle, 1, nullptr);
    }
    if (verb == "peek") {
        return held.view[0];
    }
    if (verb == "poke") {
        words >> number;
        held.view[0] = static_cast<int>(number);
        return 0;
    }
    if (verb == "name") {
        return RegisterWindowMessageA(name.c_str());
    }
    return open(verb, name, words);
}

void readLines(void*) {
    static std::string pending;
    char bytes[4096];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) {
        PostQuitMessage(0);
        return;
    }
    pending.append(bytes, static_cast<std::size_t>(count));
    for (std::size_t end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
        std::printf("%ld\n", obey(pending.substr(0, end)));
        std::fflush(stdout);
        pending.erase(0, end + 1);
    }
}

int run(const char* title) {
    const WNDCLASSA windowClass{0, handle, 0, 0, 0, PEER_CLASS};
    RegisterClassA(&windowClass);
    const HWND window = CreateWindowExA(0, PEER_CLASS, title, 0, 0, 0, 0, 0, 0, 0);
    if (window == 0) {
        return 1;
    }
    WatchDescriptor(STDIN_FILENO, readLines, nullptr);
    std::printf("%x\n", window);
    std::fflush(stdout);
    MSG message{};
    while (GetMessageA(&message, 0, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    return 0;
}

}  // namespace
}  // namespace juntora::test

int main(int argc, char** argv) {
    juntora::SetProgramArguments(argc, argv);
    return juntora::test::run(argc > 1 ? argv[1] : "peer");
}
