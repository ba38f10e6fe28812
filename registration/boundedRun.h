// Running a program to its end, but not for ever.
#pragma once

#include <string>

namespace juntora {

/// Starts a program hidden, with this process's folder, environment and standard streams, and waits
/// for its end: 30 s, or as many as JUNTORA_REGISTRAR_SECONDS says, from 1 to 3600. One that has
/// not ended then is killed. Serves no messages meanwhile.
///
/// Returns an empty text if the program has ended by itself, in whatever way; else what went wrong.
std::string runBounded(const std::string& commandLine);

}  // namespace juntora
