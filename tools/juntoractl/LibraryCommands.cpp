// library: tells the hub of libraries that have changed, as any program does, by the hub's object.
#include <cstdio>
#include <string>

#include "bridge/CLibraryStatus.h"
#include "bridge/TvxOleDispatchDriver.h"
#include "framework/COleObjectFactory.h"
#include "platform/messages.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

struct Options {
    std::string file;
};

std::string meaningOf(HRESULT result) {
    switch (result) {
        case S_OK:
            return "the hub's object is of another kind: it is one of another version";
        case CO_E_CLASSSTRING:
        case REGDB_E_CLASSNOTREG:
            return "no hub has registered itself yet: start juntora once";
        case CO_E_APPNOTFOUND:
            return "the registered hub is not there any more: start juntora once";
        case CO_E_SERVER_EXEC_FAILURE:
            return "the hub was started and ended at once: perhaps one runs that has lost the "
                   "message bus; close it and try again";
        case CO_E_SERVER_START_TIMEOUT:
            return "the hub was started and is not ready";
        case RPC_E_TIMEOUT:
            return "the hub does not answer";
        case RPC_E_DISCONNECTED:
            return "the hub, or the message bus, has ended";
        case HRESULT_FROM_WIN32(ERROR_LOCK_FAILED):
        case HRESULT_FROM_WIN32(ERROR_BADDB):
        case HRESULT_FROM_WIN32(ERROR_NOT_REGISTRY_FILE):
            return "the registry, which knows the hub's program, cannot be read";
        default: {
            char text[64];
            std::snprintf(text, sizeof text, "the call failed, error 0x%08X",
                          static_cast<DWORD>(result));
            return text;
        }
    }
}

/// Calls a member of an object made for it.
template <class... Arguments>
int callMember(LONG member, Arguments... arguments) {
    if (!AfxOleInit()) {
        return EXIT_CODE_REFUSED;
    }
    TvxOleDispatchDriver driver;
    COleException error;
    if (!driver.createObjectDispatch(LIBRARY_STATUS_PROGRAM_ID, IID_LibraryStatus, &error)) {
        complain(meaningOf(error.m_sc));
        return EXIT_CODE_NO_HUB;
    }
    try {
        driver.InvokeHelper<LONG>(member, arguments...);
    } catch (CException* exception) {
        const auto* failed = dynamic_cast<const COleException*>(exception);
        complain(meaningOf(failed != nullptr ? failed->m_sc : E_FAIL));
        exception->Delete();
        return EXIT_CODE_REFUSED;
    }
    return EXIT_CODE_DONE;
}

int listChanged(const Options&) { return callMember(LIBRARY_LIST_CHANGED_MEMBER); }
int changed(const Options& options) {
    return callMember(LIBRARY_CHANGED_MEMBER, options.file.c_str());
}
int closeFile(const Options& options) {
    return callMember(CLOSE_FILE_MEMBER, options.file.c_str());
}

}  // namespace

void addLibraryCommands(CLI::App& app, Action* action) {
    CLI::App* group = app.add_subcommand(
        "library", "Tell the hub, and Sketchel through it, of libraries that have changed");
    group->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    addCommand(*group, "list-changed", "The list of libraries has changed", options, listChanged,
               action);
    addCommand(*group, "changed", "A library has changed", options, changed, action)
        ->add_option("FILE", options->file, "The library, as Sketchel knows it")
        ->required();
    addCommand(*group, "close", "A file is to be closed", options, closeFile, action)
        ->add_option("FILE", options->file, "The file")
        ->required();
}

}  // namespace juntora
