#include "platform/files/search.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/files/CaseFolding.h"
#include "platform/files/FileState.h"
#include "platform/files/HostPath.h"
#include "platform/files/PathSyntax.h"
#include "platform/files/Wildcard.h"
#include "platform/kernel/SystemError.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

struct Search {
    std::string folder;  ///< Linux path with a trailing slash.
    std::vector<std::string> names;
    std::size_t next = 0;
};

/// The searches that have been begun and not closed, so that a wrong handle is told from one.
class OpenSearches {
public:
    HANDLE add(std::unique_ptr<Search> search) {
        const std::lock_guard guard(m_mutex);
        const HANDLE handle = search.get();
        m_searches.emplace(handle, std::move(search));
        return handle;
    }
    /// Null for what is no search.
    Search* find(HANDLE handle) {
        const std::lock_guard guard(m_mutex);
        const auto found = m_searches.find(handle);
        return found == m_searches.end() ? nullptr : found->second.get();
    }
    bool remove(HANDLE handle) {
        const std::lock_guard guard(m_mutex);
        return m_searches.erase(handle) != 0;
    }

private:
    std::mutex m_mutex;
    std::map<HANDLE, std::unique_ptr<Search>> m_searches;
};

OpenSearches& openSearches() {
    static auto* const searches = new OpenSearches;
    return *searches;
}

/// A name that the platform's paths can tell and an entry has room for.
bool isSearchable(std::string_view name) {
    return name.size() < sizeof WIN32_FIND_DATAA::cFileName &&
           name.find('\\') == std::string_view::npos;
}

/// "." and ".." come first, the case of letters last.
bool comesBefore(const std::string& left, const std::string& right) {
    const auto rank = [](const std::string& name) {
        return name == "." ? 0 : name == ".." ? 1 : 2;
    };
    if (rank(left) != rank(right)) {
        return rank(left) < rank(right);
    }
    if (!files::equalIgnoringCase(left, right)) {
        return files::lessIgnoringCase(left, right);
    }
    return left < right;
}

/// The names in a folder that the pattern stands for. 0, or the errno.
int readNames(const std::string& folder, std::string_view pattern,
              std::vector<std::string>* names) {
    DIR* listing = opendir(folder.c_str());
    if (listing == nullptr) {
        return errno;
    }
    while (const dirent* entry = readdir(listing)) {
        if (isSearchable(entry->d_name) && files::matchesWildcard(pattern, entry->d_name)) {
            names->emplace_back(entry->d_name);
        }
    }
    closedir(listing);
    std::sort(names->begin(), names->end(), comesBefore);
    return 0;
}

bool takeNext(Search* search, WIN32_FIND_DATAA* data) {
    while (search->next < search->names.size()) {
        const std::string& name = search->names[search->next++];
        struct statx state {};
        if (statx(AT_FDCWD, (search->folder + name).c_str(), 0, STATX_BASIC_STATS, &state) == 0) {
            data->dwFileAttributes = files::attributesOf(state, name);
            data->nFileSizeHigh = static_cast<DWORD>(state.stx_size >> 32);
            data->nFileSizeLow = static_cast<DWORD>(state.stx_size);
            std::memcpy(data->cFileName, name.c_str(), name.size() + 1);
            return true;
        }
    }
    return false;
}

/// How much of the path names the folder: up to the last separator, or to the drive's colon.
std::size_t folderLength(std::string_view path) {
    const std::size_t separator = path.find_last_of(files::SEPARATORS);
    if (separator != std::string_view::npos) {
        return separator + 1;
    }
    return files::hasDrive(path) ? 2 : 0;
}

HANDLE fail(DWORD error) {
    SetLastError(error);
    return INVALID_HANDLE_VALUE;
}

}  // namespace

HANDLE FindFirstFileA(const char* path, WIN32_FIND_DATAA* data) {
    const std::string_view text(path);
    const std::string_view folderText = text.substr(0, folderLength(text));
    const files::Located folder = files::locate(folderText.empty() ? "." : folderText);
    if (folder.error != 0) {
        return fail(folder.error == ERROR_FILE_NOT_FOUND ? ERROR_PATH_NOT_FOUND : folder.error);
    }
    auto search = std::make_unique<Search>();
    search->folder = folder.path + "/";
    const int error = readNames(search->folder, text.substr(folderText.size()), &search->names);
    if (error != 0) {
        return fail(kernel::errorOf(error));
    }
    if (!takeNext(search.get(), data)) {
        return fail(ERROR_FILE_NOT_FOUND);
    }
    return openSearches().add(std::move(search));
}

BOOL FindNextFileA(HANDLE handle, WIN32_FIND_DATAA* data) {
    Search* search = openSearches().find(handle);
    if (search == nullptr || !takeNext(search, data)) {
        SetLastError(search == nullptr ? ERROR_INVALID_HANDLE : ERROR_NO_MORE_FILES);
        return 0;
    }
    return 1;
}

BOOL FindClose(HANDLE search) {
    if (!openSearches().remove(search)) {
        SetLastError(ERROR_INVALID_HANDLE);
        return 0;
    }
    return 1;
}

}  // namespace juntora
