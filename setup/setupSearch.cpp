#include "setup/setupSearch.h"

#include <cstdlib>
#include <memory>

#include "platform/files/access.h"
#include "setup/home.h"
#include "setup/mrdCommon.h"
#include "setup/programTree.h"

namespace juntora {
namespace {

struct Freer {
    void operator()(void* memory) const { std::free(memory); }
};

/// The process's handle, made at the first call; 0 as long as that fails.
mrfHandle searchHandle() {
    static mrfHandle handle = 0;
    if (handle == 0 && mrfInitialize(&handle) != MRF_DONE) {
        handle = 0;
    }
    return handle;
}

}  // namespace

bool SearchFile(const char* name, std::string* out) {
    const mrfHandle handle = searchHandle();
    char path[2048];
    if (handle == 0 || mrfSearch(handle, name, path, sizeof path) != MRF_DONE) {
        return false;
    }
    *out = path;
    return true;
}

bool GetToolsDir(std::string* out) {
    const std::string root = GetInstallRoot();
    if (!root.empty()) {
        *out = root + "\\tools";
        return true;
    }
    *out = RunningProgramFolder();
    if (out->ends_with('\\')) {
        out->pop_back();
    }
    return true;
}

bool FindSetupFile(const char* product, const char* file, std::string* out) {
    std::string name = std::string(product) + "/" + SETUP_VERSION;
    if (file) {
        name.append("/").append(file);
    }
    homeFolder(HomeDrive::ALWAYS_C);
    return SearchFile(name.c_str(), out);
}

bool FullSearchDirList(const char* name, std::vector<std::string>* out,
                       const std::array<std::string, 2>& dirs) {
    const mrfHandle handle = searchHandle();
    const char* const pair[] = {dirs[0].c_str(), dirs[1].c_str()};
    char** found = nullptr;
    if (handle == 0 || mrfFullSearchDirList(handle, name, pair, &found) != MRF_DONE) {
        return false;
    }
    const std::unique_ptr<char*, Freer> list(found);
    for (char** path = found; path && *path; ++path) {
        const std::unique_ptr<char, Freer> text(*path);
        out->emplace_back(text.get());
    }
    return true;
}

bool CollectSearchDirs(const std::string& product, const std::string& subDir, const char* name,
                       std::vector<std::string>* out) {
    if (!name || *name == '\0') {
        return false;
    }
    const std::string own = "mrdsetup/" + product;
    std::string installed;
    GetToolsDir(&installed);
    installed.append("/").append(subDir).append("/").append(name);
    homeFolder(HomeDrive::OF_THE_USER);
    FullSearchDirList(name, out, {own + "/" + SETUP_VERSION, own});
    if (CheckAccess(installed.c_str(), ACCESS_EXISTS)) {
        out->push_back(std::move(installed));
    }
    return true;
}

std::string FirstSearchDir(const std::string& product, const std::string& subDir,
                           const char* name) {
    std::vector<std::string> dirs;
    CollectSearchDirs(product, subDir, name, &dirs);
    return dirs.empty() ? "" : dirs.front();
}

}  // namespace juntora
