// The hub's activity lines, read from outside: the lines of a list box in the hub's process.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace juntora {

/// One tool, or one file that a tool holds.
struct ActivityLine {
    std::string name;
    HWND id;
    std::string file;    ///< Empty for none.
    std::string access;  ///< "", "r", "w" or "r/w".
    bool isMarked;

    bool operator==(const ActivityLine&) const = default;
};

/// Takes a line of the list apart; nothing for a text that is none.
std::optional<ActivityLine> parseActivityLine(std::string_view text);

class ActivityReader {
public:
    /// Finds the list of the hub that has `hubWindow`. False when it has none.
    bool find(HWND hubWindow);
    /// All lines in their order. What comes and goes while they are being read is looked at again,
    /// for as long as that may take an end; afterwards the last reading is good enough.
    std::vector<ActivityLine> read() const;
    /// Whether anything may have changed since the last call of this; costs the hub nothing.
    bool hasNews();

private:
    HWND m_list = 0;
    DWORD m_lastChange = 0;
};

}  // namespace juntora
