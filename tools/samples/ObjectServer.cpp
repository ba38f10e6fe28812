#include "tools/samples/ObjectServer.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string_view>

#include "common/CaseBlind.h"
#include "common/PerUserRegistration.h"
#include "framework/COleObjectFactory.h"
#include "platform/desktop/message.h"
#include "platform/files/wholeFile.h"
#include "platform/kernel/printable.h"
#include "platform/kernel/process.h"
#include "platform/kernel/signals.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

constexpr char LOG_VARIABLE[] = "JUNTORA_SAMPLE_LOG";
constexpr char COMMAND_LINES[] = "Software\\Tarvex\\Voltara Juntora\\16.6.0\\";

constexpr char SCRIPT_CLASS[] = "JuntoraSampleScript";
constexpr char SERVER_CLASS[] = "JuntoraSampleServer";
constexpr DWORD UNUSED_MILLISECONDS = 60'000;
constexpr DWORD LINGER_MILLISECONDS = 2'000;
constexpr std::uintptr_t TIMER = 1;
constexpr std::size_t LONGEST_SCRIPT = 65'536;

/// Watches over the program's end; 0 in one that ends by hand.
HWND g_watch = 0;

HWND makeWindow(const char* name, WNDPROC procedure) {
    const WNDCLASSA windowClass{0, procedure, 0, 0, 0, name};
    RegisterClassA(&windowClass);
    return CreateWindowExA(0, name, "", 0, 0, 0, 0, 0, 0, 0);
}

/// The program has been without objects for long enough, unless there is one again.
LRESULT handleServer(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_TIMER) {
        KillTimer(window, TIMER);
        if (AfxOleCanExitApp()) {
            PostQuitMessage(0);
        }
        return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

bool hasSwitch(int argc, char** argv, std::string_view name) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word.size() == name.size() + 1 && (word[0] == '-' || word[0] == '/') &&
            equalCaseBlind(word.substr(1), name)) {
            return true;
        }
    }
    return false;
}

}  // namespace

void say(const char* tool, const std::string& text) {
    const std::string line = std::string(tool) + ": " + PrintableText(text) + "\n";
    std::fputs(line.c_str(), stdout);
    std::fflush(stdout);
    if (const char* log = GetEnvironment(LOG_VARIABLE)) {
        std::ofstream(log, std::ios::app) << line << std::flush;
    }
}

std::string leftCommandLine(const char* toolKey) {
    std::string text;
    ReadRegistryText(HKEY_CURRENT_USER, std::string(COMMAND_LINES) + toolKey, "CmdLine", &text);
    return text;
}

SampleObject::SampleObject() {
    EnableAutomation();
    AfxOleLockApp();
}

SampleObject::~SampleObject() {
    AfxOleUnlockApp();
    if (g_watch != 0 && AfxOleCanExitApp()) {
        SetTimer(g_watch, TIMER, LINGER_MILLISECONDS, nullptr);
    }
}

int runObjectServer(int argc, char** argv, const char* tool) {
    SetProgramArguments(argc, argv);
    const bool isLeaving = hasSwitch(argc, argv, "Unregserver");
    const bool isForRegistryAlone = isLeaving || hasSwitch(argc, argv, "Regserver");
    if (!AfxOleInit() && !isForRegistryAlone) {
        return 1;
    }
    PerUserRegistrationOn();
    const bool isDone = COleObjectFactory::UpdateRegistryAll(!isLeaving);
    PerUserRegistrationOff();
    if (!isDone) {
        std::fprintf(stderr, "%s: its classes could not be %sregistered for other programs\n", tool,
                     isLeaving ? "un" : "");
    }
    if (isForRegistryAlone) {
        return isDone ? 0 : 1;
    }
    const HWND window = makeWindow(SERVER_CLASS, &handleServer);
    if (window == 0 || !QuitOnSignals() || !COleObjectFactory::RegisterAll()) {
        std::fprintf(stderr, "%s: its classes cannot be offered on this desktop\n", tool);
        return 1;
    }
    if (hasSwitch(argc, argv, "Embedding")) {
        g_watch = window;
        SetTimer(window, TIMER, UNUSED_MILLISECONDS, nullptr);
    }
    MSG message{};
    while (GetMessageA(&message, 0, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    return 0;
}

SampleScript::SampleScript(Step step)
    : m_step(std::move(step)), m_window(makeWindow(SCRIPT_CLASS, &procedure)) {
    SetWindowUserData(m_window, reinterpret_cast<LPARAM>(this));
}

SampleScript::~SampleScript() { DestroyWindow(m_window); }

LRESULT SampleScript::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* const script = reinterpret_cast<SampleScript*>(GetWindowUserData(window));
    if (script == nullptr || (message != WM_APP && message != WM_TIMER)) {
        return DefWindowProcA(window, message, wParam, lParam);
    }
    KillTimer(window, TIMER);
    script->next();
    return 0;
}

bool SampleScript::load(const std::string& path) {
    std::string text(LONGEST_SCRIPT, '\0');
    const long length = ReadFileStart(path.c_str(), text.data(), text.size());
    KillTimer(m_window, TIMER);
    m_lines.clear();
    m_at = 0;
    if (length < 0) {
        return false;
    }
    std::istringstream lines(text.substr(0, static_cast<std::size_t>(length)));
    for (std::string line; std::getline(lines, line);) {
        m_lines.push_back(line);
    }
    return true;
}

void SampleScript::run() { PostMessageA(m_window, WM_APP, 0, 0); }

void SampleScript::next() {
    if (m_at >= m_lines.size()) {
        return;
    }
    const std::string line = m_lines[m_at++];
    const std::size_t blank = std::min(line.find(' '), line.size());
    const std::string word = line.substr(0, blank);
    const std::string rest = line.substr(std::min(blank + 1, line.size()));
    if (word == "wait") {
        SetTimer(m_window, TIMER, static_cast<DWORD>(std::atoi(rest.c_str())), nullptr);
        return;
    }
    if (!word.empty()) {
        m_step(word, rest);
    }
    run();
}

}  // namespace juntora
