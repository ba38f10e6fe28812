// Where and when this program runs. Any thread may call these.
#pragma once

#include <string>

#include "common/PathName.h"

namespace juntora {

/// The folder of the running program's file; empty where the file's path takes more than 256 bytes
/// with its NUL: cut, it would be another folder.
PathName ProgramDirectory();

/// The local time as asctime writes it, line end included: "Thu Jan  1 00:00:00 1970\n".
std::string TimeText();

}  // namespace juntora
