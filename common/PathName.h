// A file path as a value.
#pragma once

#include <string>
#include <string_view>

namespace juntora {

/// A file's path, and the text that it was made from. An empty path names no file.
class PathName {
public:
    PathName() = default;
    explicit PathName(std::string_view path);

    bool isEmpty() const { return m_strPath.empty(); }
    /// The full text; it belongs to the object and lives until the object changes.
    const char* c_str() const { return m_strPath.c_str(); }
    int length() const { return static_cast<int>(m_strPath.size()); }
    /// What the path was made from.
    std::string getEntered() const { return m_strEntered; }

    /// Whether both name the same file: their texts differ at most in case.
    bool operator==(const PathName& other) const;

private:
    std::string m_strPath;
    std::string m_strEntered;
};

}  // namespace juntora
