#include "setup/configValues.h"

#include "platform/files/privateProfile.h"
#include "setup/configFile.h"
#include "setup/pathList.h"

namespace juntora {

int GetConfigString(const char* section, const char* key, const char* standard, char* buffer,
                    DWORD size, const char* file, bool quote) {
    if (!section) {
        return ReadPathList(nullptr, key, NO_SECTIONS, buffer, size, file, quote);
    }
    if (!key && buffer && size > 0) {
        *buffer = '\0';
    }
    return ReadPathList(section, key, standard, buffer, size, file, quote);
}

int GetConfigStringDefault(const char* section, const char* key, const char* standard, char* buffer,
                           DWORD size) {
    return GetConfigString(section, key, standard, buffer, size, "", false);
}

int GetConfigInt(const char* section, const char* key, int standard, const char* file) {
    const std::string looked = file ? "" : GetConfigFilePath();
    return static_cast<int>(
        GetPrivateProfileIntA(section, key, standard, file ? file : looked.c_str()));
}

int WriteConfigString(const char* section, const char* key, const char* value, const char* file,
                      bool quote) {
    return WritePathList(section, key, value, file, quote);
}

}  // namespace juntora
