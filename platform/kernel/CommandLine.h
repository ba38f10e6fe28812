// Command lines, taken apart and put together.
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

}  // namespace juntora::kernel
