#include "platform/files/installRoot.h"

#include <string_view>

#include "platform/files/NamedFolder.h"
#include "platform/files/attributes.h"
#include "platform/files/status.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

constexpr char ROOT_VARIABLE[] = "JUNTORA_ROOT";
constexpr std::string_view PROGRAMS = "/bin/";
constexpr char INSTALLED[] = "/share/voltara";

constexpr char SYSTEM_VARIABLE[] = "systemroot";
constexpr char SYSTEM_FOLDER[] = "/lib/voltara";

/// A program does not move while it runs.
std::string rootOfProgram() {
    char program[4096];
    const std::string path(program, GetModuleFileNameA(program, sizeof program));
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    if (!folder.ends_with(PROGRAMS)) {
        return "";
    }
    const std::string root = folder.substr(0, folder.size() - PROGRAMS.size());
    return GetFileAttributesA((root + INSTALLED).c_str()) != INVALID_FILE_ATTRIBUTES ? root : "";
}

}  // namespace

std::string InstallRoot() {
    std::string named = files::namedFolder(ROOT_VARIABLE);
    if (!named.empty()) {
        return named;
    }
    static const std::string root = rootOfProgram();
    return root;
}

std::string SystemRoot() {
    if (const char* named = GetEnvironment(SYSTEM_VARIABLE)) {
        return named;
    }
    const std::string root = InstallRoot();
    const std::string folder = root.empty() ? "" : root + SYSTEM_FOLDER;
    const bool isThere =
        !folder.empty() && GetFileAttributesA(folder.c_str()) != INVALID_FILE_ATTRIBUTES;
    return isThere ? folder : "";
}

}  // namespace juntora
