#include "platform/automation/registration.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/automation/Services.h"
#include "platform/automation/automation.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

namespace fs = std::filesystem;

/// Writes the default value of a key, unless it is that already.
bool writeText(const std::string& path, const std::string& text) {
    HKEY key{};
    char now[2048];
    DWORD size = sizeof now;
    DWORD type = 0;
    const DWORD bytes = static_cast<DWORD>(text.size() + 1);
    if (RegOpenKeyExA(HKEY_CLASSES_ROOT, path.c_str(), KEY_READ, &key) == ERROR_SUCCESS) {
        const bool isSame = RegQueryValueExA(key, nullptr, &type, now, &size) == ERROR_SUCCESS &&
                            type == REG_SZ && size == bytes && text == now;
        RegCloseKey(key);
        if (isSame) {
            return true;
        }
    }
    if (RegCreateKeyA(HKEY_CLASSES_ROOT, path.c_str(), &key) != ERROR_SUCCESS) {
        return false;
    }
    const bool isWritten =
        RegSetValueExA(key, nullptr, REG_SZ, text.c_str(), bytes) == ERROR_SUCCESS;
    RegCloseKey(key);
    return isWritten;
}

fs::path serviceFile(const std::string& busName) {
    const char* data = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    fs::path folder;
    if (data != nullptr && *data == '/') {
        folder = data;
    } else if (home != nullptr && *home == '/') {
        folder = fs::path(home) / ".local/share";
    } else {
        return {};
    }
    return folder / "dbus-1/services" / (busName + ".service");
}

bool writeServiceFile(const std::string& busName, const std::string& program) {
    const fs::path file = serviceFile(busName);
    if (file.empty() || program.find('\n') != program.npos) {
        return false;
    }
    const std::string text =
        "[D-BUS Service]\nName=" + busName + "\nExec=" + "\"" + program + "\" -Embedding\n";
    std::ifstream now(file);
    if (now && std::string(std::istreambuf_iterator<char>(now), {}) == text) {
        return true;
    }
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    // The bus reads such a file at any time: it is never there in part.
    const fs::path fresh = file.string() + "." + std::to_string(getpid());
    std::ofstream(fresh) << text;
    fs::rename(fresh, file, error);
    if (error) {
        fs::remove(fresh, error);
        return false;
    }
    automation::reloadServices();
    return true;
}

}  // namespace

bool RegisterClassOf(const ClassRegistration& registration) {
    const std::string id = TextOfGuid(registration.classId);
    const std::string classKey = "CLSID\\" + id;
    const std::string busName = BusNameOfClass(registration.programId);
    bool isDone = writeText(registration.programId, registration.programId);
    isDone = writeText(registration.programId + "\\CLSID", id) && isDone;
    isDone = writeText(classKey, registration.programId) && isDone;
    isDone = writeText(classKey + "\\ProgID", registration.programId) && isDone;
    isDone = writeText(classKey + "\\LocalServer32", "\"" + registration.program + "\"") && isDone;
    return !busName.empty() && writeServiceFile(busName, registration.program) && isDone;
}

bool UnregisterClassOf(const ClassRegistration& registration) {
    const std::string classKey = "CLSID\\" + TextOfGuid(registration.classId);
    std::error_code error;
    fs::remove(serviceFile(BusNameOfClass(registration.programId)), error);
    const bool isProgramGone =
        RegDeleteTreeA(HKEY_CLASSES_ROOT, registration.programId.c_str()) == ERROR_SUCCESS;
    const bool isClassGone = RegDeleteTreeA(HKEY_CLASSES_ROOT, classKey.c_str()) == ERROR_SUCCESS;
    return isProgramGone && isClassGone && !error;
}

std::string OwnProgramPath() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).string();
}

}  // namespace juntora
