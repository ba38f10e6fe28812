#include "setup/toolEnvironment.h"

#include <string>

#include "platform/kernel/modules.h"
#include "setup/environmentText.h"

namespace juntora {
namespace {

constexpr char TCL_VARIABLE[] = "MRD_TARVEX_TCL_PATH";

std::string tclFolder(const std::string& root) {
    const std::string named = environmentText(TCL_VARIABLE);
    return named.empty() ? root + "/tools/tcltk/8.4/bin" : named;
}

}  // namespace

void PrepareToolPath(const char* root) {
    const char* before = GetEnvironment("Path");
    if (!root || !before) {
        return;
    }
    const std::string java = std::string(root) + "/tools/jre/bin/client";
    PutEnvironment(("Path=" + tclFolder(root) + ";" + java + ";" + before).c_str());
    PutEnvironment("TCL_LIBRARY=");
    PutEnvironment("TK_LIBRARY=");
}

bool IsDotNetPresent() {
    const HMODULE library = LoadLibraryA("MSCorEE.dll", nullptr);
    if (library) {
        FreeLibrary(library);
    }
    return library != nullptr;
}

}  // namespace juntora
