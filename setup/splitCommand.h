// Command lines as registries and settings have them.
#pragma once

#include "framework/CString.h"

namespace juntora {

/// Takes a command line apart: `program` gets its first word in double quotes, those that it had
/// gone; `arguments` what stands behind it, from the one blank, tab or newline before the second
/// word on. Double quotes hide delimiters. Both are empty where there is nothing. A first word of
/// nothing but quotes leaves `program` empty. The line may be null, and may belong to either.
void SplitCommand(const char* commandLine, CString& program, CString& arguments);

}  // namespace juntora
