#include "setup/mrdCommon.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/files/FullPath.h"
#include "platform/files/installRoot.h"
#include "platform/files/status.h"
#include "platform/files/systemFolder.h"
#include "setup/environmentText.h"

namespace juntora {
namespace {

constexpr char TREE[] = "/mrdsetup/";
constexpr mrfHandle HANDLE_OF_ALL = 1;

std::atomic<bool> isInitialised{false};

/// Those that are set, in the order of the search.
std::vector<std::string> places() {
    std::vector<std::string> places{environmentText("HOME"), InstallRoot(), SiteFolder()};
    std::erase(places, "");
    return places;
}

char* copyOf(const std::string& text) {
    auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy) {
        std::memcpy(copy, text.c_str(), text.size() + 1);
    }
    return copy;
}

bool isThere(const std::string& path) {
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool isFolder(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

char* mrdGetInstallRoot() {
    const std::string root = isInitialised ? InstallRoot() : "";
    return root.empty() ? nullptr : copyOf(files::fullPath(root));
}

void mrdInit(int*, char**) { isInitialised = true; }

int mrfInitialize(mrfHandle* handle) {
    *handle = HANDLE_OF_ALL;
    return MRF_DONE;
}

int mrfSearch(mrfHandle handle, const char* name, char* buffer, std::size_t size) {
    if (handle != HANDLE_OF_ALL) {
        return MRF_NOT_INITIALISED;
    }
    for (const std::string& place : places()) {
        const std::string path = place + TREE + name;
        if (!isThere(path)) {
            continue;
        }
        if (path.size() >= size) {
            return MRF_NO_ROOM;
        }
        std::memcpy(buffer, path.c_str(), path.size() + 1);
        return MRF_DONE;
    }
    return MRF_NOT_FOUND;
}

int mrfFullSearchDirList(mrfHandle handle, const char* name, const char* const folders[2],
                         char*** result) {
    *result = nullptr;
    if (handle != HANDLE_OF_ALL) {
        return MRF_NOT_INITIALISED;
    }
    std::vector<std::string> found;
    for (const std::string& place : places()) {
        for (const char* folder : {folders[0], folders[1]}) {
            std::string path = place + "/" + folder + "/" + name;
            if (isFolder(path)) {
                found.push_back(std::move(path));
            }
        }
    }
    if (found.empty()) {
        return MRF_DONE;
    }
    auto** list = static_cast<char**>(std::calloc(found.size() + 1, sizeof(char*)));
    for (std::size_t i = 0; list && i < found.size(); ++i) {
        list[i] = copyOf(found[i]);
    }
    *result = list;
    return list ? MRF_DONE : MRF_NO_ROOM;
}

}  // namespace juntora
