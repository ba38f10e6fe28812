// Processes: this one's start, and starting others.
#pragma once

#include "platform/messages.h"
#include "platform/types.h"

namespace juntora {

inline constexpr DWORD STARTF_USESHOWWINDOW = 1;
/// The layer's own: the child's input is empty and its output goes nowhere, so that nobody who
/// reads this process's output waits for its end.
inline constexpr DWORD STARTF_WITHOUTSTREAMS = 0x80000000;

struct STARTUPINFOA {
    DWORD dwFlags;  ///< STARTF_USESHOWWINDOW: wShowWindow reaches the new process. Others: above.
    WORD wShowWindow;
};

struct PROCESS_INFORMATION {
    HANDLE hProcess;  ///< To be given up with CloseHandle.
    DWORD dwProcessId;
};

/// Starts a program by a command line of which the first word, in double quotes or not, names it;
/// `.exe` may stand for a name without it, in any case of letters, and `drive:\path` as well as
/// `/path` is understood. Order of search for a bare name: this program's folder, the current
/// folder, PATH. A path with blanks and without quotes is taken as far as it must be to name a
/// program. The command line as it stands and the show state reach a child that uses this
/// layer; any other gets the words, split at blanks outside of quotes. The child gets the
/// environment, `directory` (null: this one's) as current folder, and the standard three
/// descriptors alone. Returns 0 with GetLastError: ERROR_FILE_NOT_FOUND or ERROR_PATH_NOT_FOUND,
/// ERROR_ACCESS_DENIED for what may not be run, ERROR_BAD_EXE_FORMAT, ERROR_NOT_ENOUGH_MEMORY.
BOOL CreateProcessA(const char* commandLine, const char* directory, const STARTUPINFOA* startup,
                    PROCESS_INFORMATION* information);

/// Ends a process at once, wherever it is. Returns 0 if it has ended, or `process` is none.
BOOL TerminateProcess(HANDLE process);

/// What a running process has for an exit code.
inline constexpr DWORD STILL_ACTIVE = 259;
/// The exit code of a process that this one has started; 128 and the signal's number for one that
/// fell by a signal. To be asked before this process starts another or serves its messages: either
/// may forget it. Returns 0 then, and where `process` is none.
BOOL GetExitCodeProcess(HANDLE process, DWORD* exitCode);

/// Waits until the process first waits in an empty message loop or for an answer of this process,
/// or ends: 0; WAIT_TIMEOUT or WAIT_FAILED otherwise. A child that does not use this layer is never
/// idle before its end.
DWORD WaitForInputIdle(HANDLE process, DWORD milliseconds);

/// Keeps main's arguments for the two below. Programs call it first of all; a library that is
/// loaded into another program finds them by itself.
void SetProgramArguments(int argc, char** argv);
int ProgramArgumentCount();
/// argv[index], null beyond the last.
const char* ProgramArgument(int index);

/// Writes the path of the file that this process runs, in this machine's form, to `buffer` of
/// `capacity` bytes. Returns its length; 0 if it does not fit.
DWORD GetModuleFileNameA(char* buffer, DWORD capacity);

/// What stands behind the program's name on the command line that started this process, as its
/// starter wrote it; made from the arguments where it was started from a shell. A buffer of the
/// process's own that may be edited in place. Never null.
char* CommandLineTail();
/// The show state that the starter asked for, SW_SHOWDEFAULT if none.
int StartShowState();

/// For a program that outlives the one that started it. Where that was a program of this layer,
/// standard input is empty from now on, and standard output goes where standard error goes, for
/// this process and those that it starts: the starter's pipes end with the starter, and nobody
/// else's lines get into its output. What a shell has started keeps all three.
void LeaveStartersPipes();

/// The environment of this process. Names compare without regard to case; null when unset. `Path`
/// is in the platform's form here, "C:\bin;C:\usr\bin", and in this machine's for every child; its
/// text is good until the next call for it.
const char* GetEnvironment(const char* name);
/// "NAME=VALUE"; "NAME=" removes. Returns 0, or -1 without an equals sign or a name, and for a
/// `Path` of which no folder is there.
int PutEnvironment(const char* assignment);

/// The platform's version word; its top bit is clear, as on every platform that has mutexes.
DWORD GetVersion();

}  // namespace juntora
