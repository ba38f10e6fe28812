// The texts of paths: their normal form, as far as the text alone tells it, and their parts.
#pragma once

#include <string>
#include <string_view>

#include "framework/CString.h"

namespace juntora {

/// Every `/` becomes `\`.
void toBackslashes(std::string& text);

/// Shrinks each run of separators to one, but for a pair in front. A text of fewer than 4
/// characters stays as it is.
void collapseSeparators(std::string& text);

/// Takes out the segments that consist of dots: one dot goes itself, two take the name before them
/// along, three also the one before that. Stops, and leaves the rest, at a segment that would climb
/// above the start and at the end of the text: a final segment of dots stays. Separators are
/// backslashes.
void removeDots(std::string& text);

/// The parts of a path, as views of it: together, in this order, they are the whole path.
struct PathParts {
    std::string_view drive;      ///< A character and a colon in front, or empty.
    std::string_view directory;  ///< Up to and with the last backslash.
    std::string_view baseName;   ///< Up to the last dot behind that.
    std::string_view extension;  ///< With its dot, or empty.
};
/// A path of any length is taken apart whole.
PathParts splitPath(std::string_view path);

inline CString copyOf(std::string_view text) { return CString(std::string(text)); }

/// Whether two backslashes stand in front.
inline bool isUncPath(std::string_view path) { return path.starts_with("\\\\"); }

/// The stretches between the backslashes of a path, from the front; the pair in front of a UNC path
/// doesn't count, and nothing behind a last backslash is no stretch. Looks at the path, which must
/// stay.
class PathComponents {
public:
    explicit PathComponents(std::string_view path);

    bool areAtEnd() const { return m_rest.empty(); }
    /// The next one; empty at the end.
    std::string_view next();
    /// Passes over some.
    void skip(int count);
    /// All that have not been taken, as they stand in the path.
    std::string_view rest() const { return m_rest; }

private:
    std::string_view m_rest;
};

}  // namespace juntora
