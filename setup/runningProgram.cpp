#include "setup/runningProgram.h"

#include <ctime>

#include "platform/kernel/process.h"

namespace juntora {

PathName ProgramDirectory() {
    char file[256];
    PathName directory;
    if (GetModuleFileNameA(file, sizeof file) != 0) {
        PathName(CString(file)).getParent(directory);
    }
    return directory;
}

std::string TimeText() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    char text[26];  // As much as asctime writes, up to the year 9999.
    return asctime_r(localtime_r(&now, &parts), text);
}

}  // namespace juntora
