// The programs that command lines name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace juntora::kernel {

struct ProgramStart {
    std::string file;                ///< What is to be run; empty if there is nothing.
    std::vector<std::string> words;  ///< The words of the line, the program's name first.
    std::string line;                ///< The line; a name with blanks stands in quotes.
    DWORD error = 0;                 ///< Why there is nothing.
};

/// Finds the program that a line starts with. A bare name is looked for in this program's folder,
/// the current folder and along PATH; ".exe" at its end, in any case of letters, may be missing
/// from the file's name, as may the case of the letters. Where an unquoted name is no program's, it
/// is taken to go on to the next blank, and so on: a path with blanks is often written without
/// quotes.
ProgramStart findProgram(std::string_view line);

/// The file of the program of that name along PATH alone; empty if there is none. For programs of
/// the system's: a file that lies in the current folder under such a name is not meant.
std::string programOnPath(const std::string& name);

}  // namespace juntora::kernel
