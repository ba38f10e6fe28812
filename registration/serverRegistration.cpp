#include "registration/serverRegistration.h"

#include "common/PerUserRegistration.h"
#include "messages/messageFamily.h"
#include "platform/automation/registration.h"
#include "registration/classKeys.h"

namespace juntora {
namespace {

constexpr char MODULE[] = "TVCOMMN";
constexpr unsigned long DONE_MESSAGE = 11077;
constexpr unsigned long FAILED_MESSAGE = 11078;

bool isPassedOver(const std::string& path) { return path.find("_g") != path.npos; }

/// The path alone where the catalogue is missing, which has been told by then.
std::string reportLine(unsigned long message, const std::string& path) {
    std::string line = path;
    getMessageText(&line, MODULE, message, classScope().word, path.c_str());
    return line;
}

ServerResult resultOf(const RegistrarResult& ran, const std::string& path) {
    ServerResult result{ran.outcome, path};
    const std::string why = ran.why.empty() ? "" : " " + ran.why;
    switch (ran.outcome) {
        case ServerOutcome::DONE:
            result.lines.push_back(reportLine(DONE_MESSAGE, path));
            break;
        case ServerOutcome::FAILED:
            result.lines.push_back(reportLine(FAILED_MESSAGE, path));
            result.failures.push_back(result.lines.back() + why);
            break;
        case ServerOutcome::NOT_LOADED:
            result.failures.push_back(path + " could not be loaded." + why);
            break;
        case ServerOutcome::NO_REGISTRAR:
            result.failures.push_back(path + ": there is nothing to register it." + why);
            break;
        default:
            break;
    }
    return result;
}

/// Whatever is left of the class: a program that was killed may have written any part of it.
ServerOutcome takeOut(const ClassRegistration& registration) {
    bool wasThere = false;
    bool isReadable = true;
    for (const std::string& name :
         {"CLSID\\" + TextOfGuid(registration.classId), registration.programId}) {
        HKEY key{};
        const DWORD error = RegOpenKeyExA(HKEY_CLASSES_ROOT, name.c_str(), KEY_QUERY_VALUE, &key);
        RegCloseKey(key);
        wasThere = wasThere || error == ERROR_SUCCESS;
        isReadable = isReadable && (error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND);
    }
    if (!UnregisterClassOf(registration) || !isReadable) {
        return ServerOutcome::FAILED;
    }
    return wasThere ? ServerOutcome::DONE : ServerOutcome::IN_ORDER;
}

RegistrarResult runRegistrar(const std::string& kind, const std::string& path, bool doRegister,
                             void* exitFunctions) {
    if (kind == "DLL") {
        return runLibraryRegistrar(path, doRegister, exitFunctions);
    }
    if (kind == "OCX") {
        return runControlRegistrar(path, doRegister);
    }
    if (kind == "EXE") {
        return runProgramRegistrar(path, doRegister);
    }
    return {ServerOutcome::PASSED_OVER};
}

}  // namespace

ServerResult runServer(bool force, bool doRegister, const std::string& kind,
                       const std::string& path, const std::string& classId,
                       const std::string& serverKey, void* exitFunctions) {
    if (isPassedOver(path)) {
        return {ServerOutcome::PASSED_OVER, path};
    }
    if (!force && doRegister &&
        isRegisteredAt(classId.c_str(), serverKey.c_str(), path.c_str()) != 0) {
        return {ServerOutcome::IN_ORDER, path};
    }
    if (path.find('"') != path.npos) {
        return resultOf(
            {ServerOutcome::FAILED, "A double quote in a path would have another program started."},
            path);
    }
    return resultOf(runRegistrar(kind, path, doRegister, exitFunctions), path);
}

void reportLines(const ServerResult& result, ReportFn report) {
    for (const std::string& line : result.lines) {
        if (report != nullptr) {
            report(line.c_str());
        }
    }
}

ServerResult unregisterResident(const ServerRow& row, const std::string& path) {
    if (isPassedOver(path)) {
        return {ServerOutcome::PASSED_OVER, path};
    }
    PerUserRegistrationOn();
    const ServerOutcome outcome =
        takeOut({GuidOfText("{" + row.classId + "}").value_or(GUID{}), row.residentName, path});
    PerUserRegistrationOff();
    return resultOf({outcome}, path);
}

int registerServer(int force, int doRegister, const char* kind, const char* path,
                   const char* classId, const char* serverKey, ReportFn report,
                   void* exitFunctions) {
    const ServerResult result =
        runServer(force != 0, doRegister != 0, kind, path, classId, serverKey, exitFunctions);
    reportLines(result, report);
    return result.isSuccess() ? 1 : 0;
}

}  // namespace juntora
