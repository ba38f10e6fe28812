// open, query, close, set-flags, clear-flags, find-flags.
#include <limits>

#include "ipc/ipc.h"
#include "tools/juntoractl/ScriptHandlers.h"

namespace juntora {
namespace {

constexpr int LOWEST = std::numeric_limits<int>::min();
constexpr int HIGHEST = std::numeric_limits<int>::max();

struct AccessWord {
    const char* word;
    int access;
};
constexpr AccessWord ACCESS_WORDS[] = {{"r", 1}, {"w", 2}, {"r/w", 3}};

/// A number is sent on as it is: what the hub makes of an odd one may be what is asked.
int takeAccess(Arguments& arguments) {
    for (const AccessWord& known : ACCESS_WORDS) {
        if (arguments.takeIf(known.word)) {
            return known.access;
        }
    }
    return arguments.number("ACCESS", LOWEST, HIGHEST);
}

using FileQuestion = int (*)(const char* file, int access, int* isFree, HWND* holder);
using FileChange = int (*)(const char* file, int number);

void ask(Arguments& arguments, Json& answer, FileQuestion question) {
    const std::string file = arguments.word("FILE");
    const int access = takeAccess(arguments);
    if (arguments.areComplete()) {
        int isFree = 0;
        HWND holder = 0;
        answer["result"] = question(file.c_str(), access, &isFree, &holder);
        answer["free"] = isFree != 0;
        if (isFree == 0) {
            answer["holder"] = windowText(holder);
        }
    }
}

void changeFlags(Arguments& arguments, Json& answer, FileChange change) {
    const std::string file = arguments.word("FILE");
    const int bits = arguments.number("BITS", LOWEST, HIGHEST);
    if (arguments.areComplete()) {
        answer["result"] = change(file.c_str(), bits);
    }
}

}  // namespace

void scriptOpen(Arguments& arguments, Json& answer) { ask(arguments, answer, ipcFileOpen); }

void scriptQuery(Arguments& arguments, Json& answer) { ask(arguments, answer, ipcFileQuery); }

void scriptClose(Arguments& arguments, Json& answer) {
    const std::string file = arguments.word("FILE");
    const int access = takeAccess(arguments);
    if (arguments.areComplete()) {
        answer["result"] = ipcFileClose(file.c_str(), access);
    }
}

void scriptSetFlags(Arguments& arguments, Json& answer) {
    changeFlags(arguments, answer, ipcFileSetFlags);
}

void scriptClearFlags(Arguments& arguments, Json& answer) {
    changeFlags(arguments, answer, ipcFileClearFlags);
}

void scriptFindFlags(Arguments& arguments, Json& answer) {
    const std::string file = arguments.word("FILE");
    int flags = arguments.number("FLAGS", LOWEST, HIGHEST);
    HWND window = arguments.isAtEnd() ? 0 : arguments.window("ID");
    if (arguments.areComplete()) {
        const HWND holder = ipcFileFindFlags(file.c_str(), &flags, &window);
        answer["result"] = holder;
        answer["flags"] = flags;
        if (holder != 0) {
            answer["holder"] = windowText(holder);
        }
    }
}

}  // namespace juntora
