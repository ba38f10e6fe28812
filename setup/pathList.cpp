#include "setup/pathList.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/files/privateProfile.h"
#include "platform/kernel/sync.h"
#include "setup/PathListMerge.h"
#include "setup/configFile.h"
#include "setup/pathItems.h"

namespace juntora {
namespace {

/// A value of any length, as it stands in the file.
std::string wholeValue(const char* section, const char* key, const char* standard,
                       const char* file) {
    constexpr DWORD GROWTH = 16;
    std::string value;
    for (DWORD capacity = 1024;; capacity *= GROWTH) {
        value.resize(capacity);
        const DWORD length =
            GetPrivateProfileStringA(section, key, standard, value.data(), capacity, file);
        if (length + 1 < capacity || capacity > ~DWORD{0} / GROWTH) {
            value.resize(length);
            return value;
        }
    }
}

/// Writes paths over a buffer's text, as many as fit whole and at least one; else the text stays.
class PathWriter {
public:
    PathWriter(char* buffer, DWORD size, bool quote)
        : m_buffer(buffer), m_size(size), m_mark(quote ? "\"" : "") {}

    void add(std::string path) {
        const bool isRepeated = m_before && *m_before == path;
        if (!isRepeated && !path.empty()) {
            put(path);
        }
        m_before = std::move(path);
    }
    bool isCut() const { return m_isCut; }

private:
    void put(std::string_view path) {
        const std::string_view separator = m_length == 0 ? "" : ";";
        const std::size_t needed = separator.size() + 2 * m_mark.size() + path.size();
        m_isCut = m_isCut || m_length + needed >= m_size;
        if (m_isCut) {
            return;
        }
        for (const std::string_view part : {separator, m_mark, path, m_mark}) {
            m_length += part.copy(m_buffer + m_length, part.size());
        }
        m_buffer[m_length] = '\0';
    }

    char* m_buffer;
    std::size_t m_size;
    std::string_view m_mark;
    std::size_t m_length = 0;
    bool m_isCut = false;
    std::optional<std::string> m_before;
};

}  // namespace

int ReadPathList(const char* section, const char* key, const char* standard, char* buffer,
                 DWORD size, const char* file, bool quote) {
    const bool isValue = section && key;
    const bool isLooked = !file || (isValue && *file == '\0');
    const std::string path = isLooked ? GetConfigFilePath() : file;
    SetLastError(ERROR_SUCCESS);
    const DWORD length =
        GetPrivateProfileStringA(section, key, standard, buffer, size, path.c_str());
    if (length == 0 || !isValue) {
        return length == 0 ? 0 : 1;
    }
    const DWORD error = GetLastError();
    const bool isCut = error == ERROR_MORE_DATA;
    const std::string text = isCut ? wholeValue(section, key, standard, path.c_str()) : buffer;
    PathWriter paths(buffer, size, quote);
    PathExpander(PathExpander::Relative::RESOLVED)
        .expand(text, [&paths](std::string each, std::string_view) { paths.add(std::move(each)); });
    SetLastError(paths.isCut() ? ERROR_MORE_DATA : isCut ? ERROR_SUCCESS : error);
    return 1;
}

int WritePathList(const char* section, const char* key, const char* value, const char* file,
                  bool quote) {
    if (!section || !key) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 1;
    }
    const std::string path = file ? file : GetConfigFilePath();
    std::string text;
    if (value) {
        const std::string present = wholeValue(section, key, "", path.c_str());
        text = PathListMerge(present).mergedWith(value, quote);
    }
    SetLastError(ERROR_SUCCESS);
    WritePrivateProfileStringA(section, key, text.c_str(), path.c_str());
    return 1;
}

}  // namespace juntora
