// Processes: this one's start, and starting others.
#pragma once

#include "platform/messages.h"
#include "platform/types.h"

namespace juntora {

inline constexpr DWORD STARTF_USESHOWWINDOW = 1;

struct STARTUPINFOA {
    DWORD dwFlags;  ///< STARTF_USESHOWWINDOW: wShowWindow reaches the new process.
    WORD wShowWindow;
};

struct PROCESS_INFORMATION {
    HANDLE hProcess;  ///< To be given up with CloseHandle.
    DWORD dwProcessId;
};

/// Starts a program by a command line of which the first word, in double quotes or not, names it;
/// `.exe` may stand for a name without it, in any case of letters, and `drive:\path` as well as
/// `/path` is understood. Order of search for a bare name: this program's folder, the current
/// folder, PATH. The command line as it stands and the show state reach a child that uses this
/// layer; any other gets the words, split at blanks outside of quotes. The child gets the
/// environment, `directory` (null: this one's) as current folder, and the standard three
/// descriptors alone. Returns 0 with GetLastError.
BOOL CreateProcessA(const char* commandLine, const char* directory, const STARTUPINFOA* startup,
                    PROCESS_INFORMATION* information);

/// Waits until the process first waits in an empty message loop, or ends: 0; WAIT_TIMEOUT or
/// WAIT_FAILED otherwise. A child that does not use this layer is never idle before its end.
DWORD WaitForInputIdle(HANDLE process, DWORD milliseconds);

/// Keeps main's arguments for the two below. Programs call it first of all; a library that is
/// loaded into another program finds them by itself.
void SetProgramArguments(int argc, char** argv);
int ProgramArgumentCount();
/// argv[index], null beyond the last.
const char* ProgramArgument(int index);

/// What stands behind the program's name on the command line that started this process, as its
/// starter wrote it; made from the arguments where it was started from a shell. A buffer of the
/// process's own that may be edited in place. Never null.
char* CommandLineTail();
/// The show state that the starter asked for, SW_SHOWDEFAULT if none.
int StartShowState();

/// The environment of this process. Names compare without regard to case; null when unset.
const char* GetEnvironment(const char* name);
/// "NAME=VALUE"; "NAME=" removes. Returns 0, or -1 without an equals sign or a name.
int PutEnvironment(const char* assignment);

/// The platform's version word; its top bit is clear, as on every platform that has mutexes.
DWORD GetVersion();

}  // namespace juntora
