// Running a program to its end, but not for ever.
#pragma once

#include <string>

#include "platform/types.h"

namespace juntora {

/// Starts a program hidden, with this process's folder, environment and standard streams, and waits
/// for its end: 30 s, or as many as JUNTORA_REGISTRAR_SECONDS says, from 1 to 3600. One that has
/// not ended then is killed. Serves no messages meanwhile.
///
/// No other thread may start processes meanwhile.
struct BoundedRun {
    std::string why{};       ///< Empty if the program has ended by itself; else what went wrong.
    DWORD exitCode = 0;      ///< Of one that has, as GetExitCodeProcess tells it.
    bool isMissing = false;  ///< There is no such program.
};
BoundedRun runBounded(const std::string& commandLine);

/// What is wrong with JUNTORA_REGISTRAR_SECONDS, for a person; empty for nothing. The 30 s hold
/// then.
std::string patienceProblem();

}  // namespace juntora
