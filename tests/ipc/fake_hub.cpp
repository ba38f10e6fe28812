// A hub that does nothing but tell what it gets: each record is a line on standard output, and the
// results and answers are those that standard input has asked for.
//
//   result OPCODE NUMBER          what a record of that opcode gets
//   reply OPCODE LENGTH TEXT      is written into its slot; LENGTH "keep" leaves replyLength alone
//   close OPCODE                  a record of that opcode has its sender told to close first
//   hide | show                   takes the hub's title away, so that no tool finds it, or gives it
//
// Each of these is answered by the line "ok". Records with a target are carried on as the hub does.
#include <cstdio>
#include <cstring>
#include <map>
#include <sstream>
#include <string>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/input.h"
#include "platform/kernel/process.h"

using namespace juntora;

namespace {

constexpr int KEEP = -2;

struct Answer {
    bool closesSender = false;
    int result = 0;
    int replyLength = KEEP;
    std::string text;
};

std::map<int, Answer> s_answers;
HWND s_window = 0;

void say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

std::string hex(std::uint32_t number) {
    char text[16];
    std::snprintf(text, sizeof text, "%x", number);
    return text;
}

int carryOn(int opcode, const IpcMessage& record) {
    IpcMessage* copy = ipcMemAlloc(sizeof record);
    if (copy == nullptr || !IsWindow(record.target)) {
        ipcMemFree(copy);
        return 0;
    }
    *copy = record;
    copy->replyLength = record.replyLength == -1 ? 0 : record.replyLength;
    return PostMessageA(record.target, ipcMessageId, static_cast<WPARAM>(opcode),
                        ipcMemOffset(copy));
}

int answer(int opcode, IpcMessage& record) {
    if (opcode == IPC_SIGN_ON && s_answers.count(opcode) == 0) {
        const std::string name(record.text, std::strcspn(record.text, " "));
        const std::string reply = hex(record.sender) + " " + name + ";0";
        record.replyLength = static_cast<std::int32_t>(reply.size()) + 1;
        std::strcpy(record.text, reply.c_str());
        return 1;
    }
    const Answer& wanted = s_answers[opcode];
    if (wanted.closesSender) {
        SendMessageA(record.sender, WM_CLOSE, 0, 0);
    }
    if (!wanted.text.empty()) {
        std::memcpy(record.text, wanted.text.c_str(), wanted.text.size() + 1);
    }
    if (wanted.replyLength != KEEP) {
        record.replyLength = wanted.replyLength;
    }
    return wanted.result;
}

class FakeHub : public ipc {
public:
    explicit FakeHub(HWND window) : ipc("", window, 0, nullptr, 0, 0) {}

    int onRequest(int opcode, IpcMessage* record) override {
        say("record " + std::to_string(opcode) + " target " + hex(record->target) + " sender " +
            hex(record->sender) + " reply " + std::to_string(record->replyLength) + " spill " +
            std::to_string(record->spillLength) + " link " + std::to_string(record->link) + " at " +
            std::to_string(ipcMemOffset(record)) + " text " + record->text);
        return record->target != 0 ? carryOn(opcode, *record) : answer(opcode, *record);
    }
};

FakeHub* s_hub = nullptr;

LRESULT procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    IpcMessage* record = nullptr;
    int opcode = 0;
    if (s_hub != nullptr && ipcReceive(message, wParam, lParam, &record, &opcode)) {
        const int result = s_hub->onRequest(opcode, record);
        ipcRelease(record);
        return result;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

void obey(const std::string& line) {
    std::istringstream words(line);
    std::string word;
    int opcode = 0;
    words >> word;
    if (word == "hide" || word == "show") {
        SetWindowTextA(s_window, word == "show" ? HUB_WINDOW_TITLE : "hidden");
    } else if (word == "close") {
        words >> opcode;
        s_answers[opcode].closesSender = true;
    } else if (word == "result") {
        int result = 0;
        words >> opcode >> result;
        s_answers[opcode].result = result;
    } else {
        std::string length;
        words >> opcode >> length;
        s_answers[opcode].replyLength = length == "keep" ? KEEP : std::stoi(length);
        std::getline(words >> std::ws, s_answers[opcode].text);
    }
    say("ok");
}

void takeInput(const char* bytes, std::size_t count, void*) {
    static std::string pending;
    if (count == 0) {
        PostQuitMessage(0);
        return;
    }
    pending.append(bytes, count);
    for (std::size_t end = 0; (end = pending.find('\n')) != std::string::npos;) {
        obey(pending.substr(0, end));
        pending.erase(0, end + 1);
    }
}

/// Where a tool has started this program, its output is the tool's: the start goes to a file, and
/// nothing else is told. False where it was not.
bool noteStart() {
    const char* path = GetEnvironment("FAKE_HUB_NOTE");
    std::FILE* note = path != nullptr ? std::freopen(path, "w", stdout) : nullptr;
    if (note == nullptr) {
        return false;
    }
    std::printf("%d %s\n", StartShowState(), CommandLineTail());
    return std::fflush(stdout) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    SetProgramArguments(argc, argv);
    const bool isStarted = noteStart();
    WNDCLASSA description{};
    description.lpfnWndProc = procedure;
    description.lpszClassName = HUB_WINDOW_CLASS;
    RegisterClassA(&description);
    ipcSelfId = 0;
    s_window = CreateWindowExA(0, HUB_WINDOW_CLASS, HUB_WINDOW_TITLE, WS_POPUP, 0, 0, 0, 0, 0, 0);
    FakeHub hub(s_window);
    s_hub = &hub;
    say("hub " + hex(s_window));
    if (!isStarted) {
        WatchStandardInput(takeInput, nullptr);
    }
    MSG message{};
    while (GetMessageA(&message, 0, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    s_hub = nullptr;
    return 0;
}
