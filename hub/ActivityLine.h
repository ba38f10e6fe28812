// The texts of the activity list.
//
//     Draftel;0   (1a2b)
//     Sketchel;0  (10004)        *"/home/me/my board.opj"  (r/w)
//
// The columns line up by the layout alone, and whoever reads the list (a person, or a program
// through LB_GETTEXT) reads these texts: the layout is binding.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "common/PathName.h"
#include "platform/types.h"

namespace juntora {

/// Room for a display name, NUL included.
inline constexpr int DISPLAY_NAME_SIZE = 260;

/// Bit of AppEntry::flags that shows as the mark.
inline constexpr std::uint32_t FILE_MARKED = 1;

/// Writes what a person is shown as the name of a file, cut to `size` bytes with its NUL: its name
/// alone where the file is there, else its full path; empty for an empty path.
void fileDisplayName(const PathName& file, char* buffer, int size);
/// The same of at most 259 characters.
std::string displayName(const PathName& file);

/// The line of a row. `fileText` is the file's display name, empty without a file.
std::string activityLine(std::string_view name, HWND window, std::string_view fileText,
                         std::uint32_t access, std::uint32_t flags);

}  // namespace juntora
