#include "platform/automation/registration.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/automation/ClassKeys.h"
#include "platform/automation/Services.h"
#include "platform/automation/automation.h"
#include "platform/kernel/hostEnvironment.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

namespace fs = std::filesystem;

fs::path serviceFile(const std::string& busName) {
    const std::string data = kernel::userFolder("XDG_DATA_HOME", "/.local/share");
    return data.empty() ? fs::path() : fs::path(data) / "dbus-1/services" / (busName + ".service");
}

/// False for a program whose name the bus would take for something else.
bool isQuotable(const std::string& program) {
    return program.find_first_of("\n\"\\$`") == program.npos;
}

/// A file that is never there in part, for the bus reads it at any time. What could not be written
/// whole leaves the one before as it was.
bool replaceFile(const fs::path& file, const std::string& text) {
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    const fs::path fresh = file.string() + "." + std::to_string(getpid());
    std::ofstream stream(fresh);
    stream << text;
    stream.close();
    if (stream) {
        fs::rename(fresh, file, error);
    }
    const bool isReplaced = stream && !error;
    if (!isReplaced) {
        fs::remove(fresh, error);
    }
    return isReplaced;
}

bool writeServiceFile(const std::string& busName, const std::string& program) {
    const fs::path file = serviceFile(busName);
    if (file.empty() || !isQuotable(program)) {
        return false;
    }
    const std::string text =
        "[D-BUS Service]\nName=" + busName + "\nExec=" + "\"" + program + "\" -Embedding\n";
    std::ifstream now(file);
    if (now && std::string(std::istreambuf_iterator<char>(now), {}) == text) {
        return true;
    }
    const bool isWritten = replaceFile(file, text);
    if (isWritten) {
        automation::reloadServices();
    }
    return isWritten;
}

}  // namespace

bool RegisterClassOf(const ClassRegistration& registration) {
    const std::string id = TextOfGuid(registration.classId);
    const std::string classKey = "CLSID\\" + id;
    const std::string busName = BusNameOfClass(registration.programId);
    bool isDone = automation::writeClassText(registration.programId, registration.programId);
    isDone = automation::writeClassText(registration.programId + "\\CLSID", id) && isDone;
    isDone = automation::writeClassText(classKey, registration.programId) && isDone;
    isDone = automation::writeClassText(classKey + "\\ProgID", registration.programId) && isDone;
    isDone = automation::writeClassText(classKey + "\\LocalServer32",
                                        "\"" + registration.program + "\"") &&
             isDone;
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
