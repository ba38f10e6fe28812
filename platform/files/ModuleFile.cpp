#include "platform/files/ModuleFile.h"

#include <string>

#include "platform/files/CaseFolding.h"

namespace juntora::files {
namespace {

struct StandIn {
    std::string_view extension;
    std::string_view here;
};

constexpr StandIn STAND_INS[] = {{".exe", ""}, {".dll", ".so"}, {".ocx", ".so"}};

}  // namespace

Located locateModule(std::string_view path) {
    Located file = locate(path);
    for (const auto& [extension, here] : STAND_INS) {
        if (file.error != 0 && path.size() > extension.size() &&
            equalIgnoringCase(path.substr(path.size() - extension.size()), extension)) {
            const std::string_view stem = path.substr(0, path.size() - extension.size());
            return locate(std::string(stem).append(here));
        }
    }
    return file;
}

}  // namespace juntora::files
