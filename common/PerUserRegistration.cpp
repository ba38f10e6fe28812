#include "common/PerUserRegistration.h"

#include "platform/kernel/process.h"
#include "platform/kernel/rights.h"
#include "platform/registry/registry.h"

namespace juntora {
namespace {

bool goesToMachine() {
    return GetEnvironment("TARVEX_REGISTER_IN_HKLM") != nullptr || IsUserAdministrator();
}

/// There is the user's key for classes from now on.
DWORD ensureClassesKey() {
    constexpr char CLASSES[] = "SOFTWARE\\CLASSES\\CLSID";
    HKEY key{};
    DWORD status = RegOpenKeyExA(HKEY_CURRENT_USER, CLASSES, KEY_QUERY_VALUE, &key);
    if (status != ERROR_SUCCESS) {
        status = RegCreateKeyA(HKEY_CURRENT_USER, CLASSES, &key);
    }
    if (status == ERROR_SUCCESS) {
        RegCloseKey(key);
    }
    return status;
}

}  // namespace

int PerUserRegistrationOn() {
    if (goesToMachine()) {
        return 1;
    }
    PutEnvironment("OAPERUSERTLIBREG=1");
    const DWORD status = ensureClassesKey();
    HKEY classes{};
    if (RegOpenKeyW(HKEY_CURRENT_USER, u"Software\\Classes", &classes) == ERROR_SUCCESS) {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, classes);
        RegCloseKey(classes);  // The override stays.
    }
    return static_cast<int>(status);
}

int PerUserRegistrationOff() {
    if (goesToMachine()) {
        return 1;
    }
    return static_cast<int>(RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr));
}

bool IsUserAdministrator() {
    if (GetEnvironment("MRN_TARVEX_DISABLE_ADMIN_MODE") != nullptr) {
        return false;
    }
    PSID administrators = nullptr;
    if (!AllocateAndInitializeSid(&SECURITY_NT_AUTHORITY, 2, SECURITY_BUILTIN_DOMAIN_RID,
                                  DOMAIN_ALIAS_RID_ADMINS, &administrators)) {
        return false;
    }
    BOOL isMember = 0;
    if (!CheckTokenMembership(nullptr, administrators, &isMember)) {
        isMember = 0;
    }
    FreeSid(administrators);
    return isMember != 0;
}

}  // namespace juntora
