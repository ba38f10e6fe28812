// The machine's own settings.
#pragma once

#include <string>

#include "platform/types.h"

namespace juntora {

/// The folder of settings for all users of the machine, in this machine's form and without a
/// separator at its end: what JUNTORA_SITE names; if that is unset or empty, /etc/juntora. It need
/// not be there. JUNTORA_SITE is read at each call; any thread may call.
std::string SiteFolder();

/// Writes the same in the platform's form to `buffer` of `capacity` bytes. Returns its length
/// without NUL; if it does not fit, the capacity that it needs, NUL included, and the buffer is
/// untouched.
UINT GetWindowsDirectoryA(char* buffer, UINT capacity);

}  // namespace juntora
