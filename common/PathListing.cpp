// What a directory holds.
#include <algorithm>
#include <memory>
#include <new>

#include "common/PathName.h"
#include "common/PathText.h"
#include "platform/files/search.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

constexpr int FIRST_PLACES = 200;
constexpr int FURTHER_PLACES = 100;

/// A search that is given up with the object.
class Search {
public:
    explicit Search(const char* path) : m_handle(FindFirstFileA(path, &m_entry)) {}
    ~Search() {
        if (hasBegun()) {
            FindClose(m_handle);
        }
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    bool hasBegun() const { return m_handle != INVALID_HANDLE_VALUE; }
    bool next() { return FindNextFileA(m_handle, &m_entry) != 0; }
    bool isAt(std::string_view name) const { return name == m_entry.cFileName; }
    const WIN32_FIND_DATAA& entry() const { return m_entry; }

    /// Passes over the directory itself and the one above, which come first. False if nothing else
    /// is there.
    bool skipDots() { return !isAt(".") || (next() && (!isAt("..") || next())); }

private:
    WIN32_FIND_DATAA m_entry{};
    HANDLE m_handle;
};

/// Paths in an array that its taker frees.
class Array {
public:
    Array() : m_paths(new (std::nothrow) PathName[FIRST_PLACES]) {}

    bool isUsable() const { return m_paths != nullptr; }
    int count() const { return m_count; }
    PathName* release() { return m_paths.release(); }

    /// False if there is no memory for it.
    bool add(const CString& path) {
        if (m_count == m_places && !grow()) {
            return false;
        }
        m_paths[m_count++] = PathName(path);
        return true;
    }

private:
    bool grow() {
        // In large directories by a share of what is there, since each growth copies all of it.
        const int places = m_places + std::max(FURTHER_PLACES, m_places / 2);
        std::unique_ptr<PathName[]> larger(new (std::nothrow) PathName[places]);
        if (larger == nullptr) {
            return false;
        }
        std::copy_n(m_paths.get(), m_count, larger.get());
        m_paths = std::move(larger);
        m_places = places;
        return true;
    }

    std::unique_ptr<PathName[]> m_paths;
    int m_places = FIRST_PLACES;
    int m_count = 0;
};

}  // namespace

int PathName::listDirectory(const CString& pattern, PathName** out, int* count,
                            unsigned long mustHave, unsigned long mustNotHave) const {
    if (pattern.IsEmpty() || out == nullptr || count == nullptr || !isDirectory()) {
        return -1;
    }
    *out = nullptr;
    *count = 0;
    const std::string folder = std::string(text()).append(text().ends_with('\\') ? "" : "\\");
    Search search((folder + static_cast<const char*>(pattern)).c_str());
    if (!search.hasBegun()) {
        const DWORD error = GetLastError();
        return error == ERROR_FILE_NOT_FOUND || error == ERROR_BAD_NETPATH ? 0 : -1;
    }
    Array found;
    if (!found.isUsable()) {
        return -1;
    }
    if (!search.skipDots()) {
        return 0;
    }
    do {
        const unsigned long bits = search.entry().dwFileAttributes;
        const bool isWanted =
            (bits & mustHave) == mustHave && (bits & mustNotHave & ~mustHave) == 0;
        if (isWanted && !found.add(CString(folder + search.entry().cFileName))) {
            return -1;
        }
    } while (search.next());
    if (found.count() == 0) {
        return 0;
    }
    *count = found.count();
    *out = found.release();
    return 1;
}

}  // namespace juntora
