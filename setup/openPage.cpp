#include "setup/openPage.h"

#include <algorithm>
#include <string>

#include "framework/CWinApp.h"
#include "messages/messageFamily.h"
#include "platform/files/shell.h"
#include "platform/kernel/CommandLine.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

constexpr char BROWSER_KEY[] = "htmlfile\\shell\\open\\command";
constexpr char PAGE_PLACE[] = "%1";
constexpr std::size_t BROWSER_COMMAND_SIZE = 1024;
constexpr std::size_t COMMAND_LINE_SIZE = 1040;
constexpr unsigned FAILURE_STYLE = MB_SYSTEMMODAL | MB_ICONWARNING;

/// The command up to where the page's place is; empty if the registry has none.
std::string browserCommand() {
    std::string command;
    ReadRegistryText(HKEY_CLASSES_ROOT, BROWSER_KEY, nullptr, &command);
    if (command.size() >= BROWSER_COMMAND_SIZE) {
        return "";
    }
    return command.substr(0, command.find(PAGE_PLACE));
}

/// Empty where there is no such line. The page must stay one word behind the program's name,
/// whatever it consists of: a blank or a quote in it must not begin another one.
std::string browserLine(const std::string& command, const std::string& address) {
    if (command.find_first_not_of(" \t\"") == std::string::npos || address.starts_with('-')) {
        return "";
    }
    // What stood around the page's place in quotes is open here, up to the line's end.
    const bool isInQuotes = std::count(command.begin(), command.end(), '"') % 2 != 0;
    if (isInQuotes && address.find('"') != std::string::npos) {
        return "";
    }
    std::string line = command + ' ';
    line += isInQuotes ? address : kernel::joinCommandLine({address});
    // A quote that the program takes for a character has been counted as one.
    const std::size_t words = kernel::splitCommandLine(isInQuotes ? command + '"' : command).size();
    const bool isOneWord = kernel::splitCommandLine(line).size() == words + (isInQuotes ? 0U : 1U);
    return isOneWord && line.size() < COMMAND_LINE_SIZE ? line : "";
}

bool start(const std::string& line) {
    const STARTUPINFOA quiet{STARTF_WITHOUTSTREAMS, 0};
    PROCESS_INFORMATION browser{};
    if (line.empty() || !CreateProcessA(line.c_str(), nullptr, &quiet, &browser)) {
        return false;
    }
    CloseHandle(browser.hProcess);
    return true;
}

}  // namespace

int OpenPage(const char* address) {
    constexpr int FAILURES = 32;  // Up to this number.
    if (!address || *address == '\0') {
        return 1;
    }
    if (ShellExecuteA(0, "open", address, nullptr, nullptr, SW_SHOWNORMAL) > FAILURES) {
        return 0;
    }
    return start(browserLine(browserCommand(), address)) ? 0 : 1;
}

int OpenPageOrReport(const char* address, const char* module, unsigned long number) {
    return OpenPage(address) == 0 ? 0 : showMessageBox(module, number, FAILURE_STYLE, 0);
}

int OpenPageOrSay(const char* address, int stringId) {
    return OpenPage(address) == 0 ? 0 : AfxMessageBox(stringId, FAILURE_STYLE);
}

}  // namespace juntora
