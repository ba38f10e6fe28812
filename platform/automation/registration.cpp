#include "platform/automation/registration.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/automation/ClassKeys.h"
#include "platform/automation/Services.h"
#include "platform/automation/automation.h"
#include "platform/files/wholeFile.h"
#include "platform/kernel/hostEnvironment.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

namespace fs = std::filesystem;

fs::path serviceFile(const std::string& busName) {
    const std::string data = kernel::userDataFolder();
    return data.empty() ? fs::path() : fs::path(data) / "dbus-1/services" / (busName + ".service");
}

/// False for a program whose name the bus would take for something else.
bool isQuotable(const std::string& program) {
    return program.find_first_of("\n\"\\$`") == program.npos;
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
    const bool isWritten = ReplaceWholeFile(file.c_str(), text.data(), text.size());
    if (isWritten) {
        automation::reloadServices();
    }
    return isWritten;
}

/// True also where there is none.
bool removeKey(const std::string& path) {
    const DWORD error = RegDeleteTreeA(HKEY_CLASSES_ROOT, path.c_str());
    return error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND;
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
    isDone = !busName.empty() && writeServiceFile(busName, registration.program) && isDone;
    // Last: who finds it takes the class for registered as a whole.
    return automation::writeClassText(classKey + "\\LocalServer32",
                                      "\"" + registration.program + "\"") &&
           isDone;
}

bool UnregisterClassOf(const ClassRegistration& registration) {
    const std::string classKey = "CLSID\\" + TextOfGuid(registration.classId);
    std::error_code error;
    fs::remove(serviceFile(BusNameOfClass(registration.programId)), error);
    const bool isProgramGone = removeKey(registration.programId);
    const bool isClassGone = removeKey(classKey);
    return isProgramGone && isClassGone && !error;
}

std::string OwnProgramPath() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).string();
}

}  // namespace juntora
