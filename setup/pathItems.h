// The shorthand in which people write lists of folders: items between ";", in double quotes or not.
// "$NAME" and "$NAME\suffix" stand for each element of the list that the variable holds, with the
// suffix behind it; ".\x" and "..\x" are relative to the file of the suite's settings; all else is
// plain. Items may be empty.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace juntora {

/// The items of a list, views of it, without their quotes: the first one loses them only if it has
/// them at both ends, any other at either end. A ";" in quotes separates all the same.
std::vector<std::string_view> splitPathItems(std::string_view list);

/// The variables that items of a list name and that are not set: such items expand to nothing.
std::vector<std::string> unsetVariables(std::string_view list);

/// What an item is as it stands in a list, for all of its expansions.
inline constexpr char PLAIN_FORM[] = "_false";

inline bool isRelativeItem(std::string_view item) {
    return item.starts_with(".\\") || item.starts_with("..\\");
}

/// Expands lists, for as long as the environment and the settings stay as they are.
class PathExpander {
public:
    enum class Relative { RESOLVED, AS_PLAIN };
    explicit PathExpander(Relative relative) : m_relative(relative) {}

    /// Takes an expansion, and the form of its item: PLAIN_FORM; of a variable its text without the
    /// "$"; of a relative one its text.
    using Taker = std::function<void(std::string path, std::string_view form)>;

    /// A variable that is not set has no expansions; nor has a relative item where there is no file
    /// of settings.
    void expand(std::string_view list, const Taker& take);

private:
    static void expandVariable(std::string_view item, const Taker& take);
    std::string resolve(std::string_view item);

    Relative m_relative;
    std::optional<std::string> m_settings;  ///< The file's path, once it has been needed.
};

}  // namespace juntora
