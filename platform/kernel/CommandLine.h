// Command lines and the programs that they name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace juntora::kernel {

/// The words of a line: separated by blanks and tabs outside of double quotes; a backslash before a
/// quote makes it a character, two of them before a quote one backslash; two quotes inside a quoted
/// word one quote. The first word knows quotes alone, as a program's name may hold backslashes.
std::vector<std::string> splitCommandLine(std::string_view line);

/// What stands behind the first word and the blanks after it.
std::string_view tailOf(std::string_view line);

/// Words as one line that splits into them again.
std::string joinCommandLine(const std::vector<std::string>& words);

/// The file that a command line's first word stands for, empty if there is none. A bare name is
/// looked for in this program's folder, the current folder and along PATH; ".exe" at its end, in
/// any case of letters, may be missing from the file's name, as may the case of the letters.
std::string findProgram(const std::string& word);

}  // namespace juntora::kernel
