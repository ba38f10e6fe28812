#include "setup/configFile.h"

#include <cstring>
#include <optional>

#include "platform/files/access.h"
#include "platform/files/status.h"
#include "platform/files/systemFolder.h"
#include "platform/registry/registry.h"
#include "setup/environmentText.h"
#include "setup/programTree.h"
#include "setup/setupSearch.h"
#include "setup/userCopy.h"

namespace juntora {
namespace {

constexpr char FILE_NAME[] = "Voltara.ini";
constexpr char PRODUCT[] = "Tarvex_Voltara";
constexpr char SHARED_KEY[] =
    "SOFTWARE\\Meridan\\Interchange\\16.6.0\\ProductConfiguration\\Shared";
constexpr char FILE_VALUE[] = "VoltaraConfigFile";
constexpr char PATH_VARIABLE[] = "VOLTARAINIPATH";

/// The first text of a value of whichever type of texts; empty for others.
std::string readPath(HKEY key) {
    char text[261];
    DWORD size = sizeof text;
    DWORD type = 0;
    if (RegQueryValueExA(key, FILE_VALUE, &type, text, &size) != ERROR_SUCCESS ||
        (type != REG_SZ && type != REG_EXPAND_SZ && type != REG_MULTI_SZ)) {
        return "";
    }
    return {text, strnlen(text, size)};
}

/// Nothing where the key is not there.
std::optional<std::string> registeredFile() {
    HKEY key{};
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, SHARED_KEY, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    std::string path = readPath(key);
    RegCloseKey(key);
    return path;
}

std::string machineFile() {
    char folder[260];
    const UINT length = GetWindowsDirectoryA(folder, sizeof folder);
    return length < sizeof folder ? std::string(folder) + "\\" + FILE_NAME : "";
}

std::string sharedFile() {
    const std::string root = GetInstallRoot();
    if (const auto registered = registeredFile()) {
        return *registered;
    }
    std::string named = environmentText(PATH_VARIABLE);
    if (!named.empty()) {
        return named;
    }
    return root.empty() ? machineFile() : root + "\\tools\\voltara\\" + FILE_NAME;
}

bool isThere(const std::string& path) { return CheckAccess(path.c_str(), ACCESS_EXISTS); }

/// A folder has no settings that could be copied, and the empty copy would stay for good.
bool isFile(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

void makeBackupFolder(const std::string& file) {
    const std::size_t slash = file.rfind('/');
    if (slash == std::string::npos) {
        return;
    }
    const std::string folder = file.substr(0, slash + 1) + "../backup";
    if (!isThere(folder)) {
        MakeDirectory(folder.c_str());
    }
}

}  // namespace

std::string GetConfigFilePath() {
    std::string shared = sharedFile();
    if (!isFile(shared)) {
        return "";
    }
    std::string copy;
    if (!EnsureUserCopy(PRODUCT, SETUP_VERSION, shared, &copy)) {
        return shared;
    }
    makeBackupFolder(copy);
    return copy;
}

}  // namespace juntora
