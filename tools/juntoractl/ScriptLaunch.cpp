// launch, launch-wait, setenv.
#include <string>

#include "ipc/ipc.h"
#include "tools/juntoractl/LaunchText.h"
#include "tools/juntoractl/ScriptHandlers.h"

namespace juntora {
namespace {

using Launch = int (*)(const char* program, const char* arguments, int reserved, int show);

void start(Arguments& arguments, Json& answer, Launch launch) {
    const std::string program = arguments.word("PROGRAM");
    const std::vector<std::string> words = arguments.words();
    if (arguments.areComplete()) {
        const int result = launch(quotedProgram(program).c_str(), quotedArguments(words).c_str(), 0,
                                  SHOW_NORMALLY);
        answer["result"] = result;
        if (result != 0) {
            answer["reason"] = launchFailure(result);
        }
    }
}

}  // namespace

void scriptLaunch(Arguments& arguments, Json& answer) { start(arguments, answer, ipcLaunch); }

void scriptLaunchWait(Arguments& arguments, Json& answer) {
    start(arguments, answer, ipcLaunchWait);
}

void scriptSetEnv(Arguments& arguments, Json& answer) {
    const std::string assignment = arguments.text("NAME=VALUE");
    if (arguments.areComplete()) {
        answer["result"] = ipcSetEnv(assignment.c_str());
    }
}

}  // namespace juntora
