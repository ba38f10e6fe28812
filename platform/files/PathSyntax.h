// The marks in a path's text.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace juntora::files {

inline constexpr char SEPARATORS[] = "/\\";

inline bool isSeparator(char c) { return c == '/' || c == '\\'; }

inline bool startsWithSeparator(std::string_view path) {
    return !path.empty() && isSeparator(path.front());
}

inline bool endsInSeparator(std::string_view path) {
    return !path.empty() && isSeparator(path.back());
}

/// Two separators at the start: a server, a share.
inline bool isUnc(std::string_view path) {
    return startsWithSeparator(path) && startsWithSeparator(path.substr(1));
}

inline bool hasDrive(std::string_view path) { return path.size() >= 2 && path[1] == ':'; }

inline std::string withSlashes(std::string text) {
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

inline std::string withBackslashes(std::string text) {
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

/// Whether a Linux path is `folder` or lies in it.
inline bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return folder == "/" || (path.starts_with(folder) &&
                             (path.size() == folder.size() || path[folder.size()] == '/'));
}

}  // namespace juntora::files
