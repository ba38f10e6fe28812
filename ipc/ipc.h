// What a tool of the suite links to reach the hub: the shared block of 64 slots, the records in it,
// the primitives that carry them, sign-on, and one call for each request.
//
// The state is one set for the process, without a lock: one thread uses all of it, the thread that
// owns the client's window. No call here shows a message but the failing start of the hub, where
// asked to. A result of 0 for "nothing was sent" is not told apart from a handler's own 0.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ipc/IpcMessage.h"
#include "platform/types.h"

namespace juntora {

/// A process's link to the hub. At most one at a time in a process.
class ipc {
public:
    /// Signs on (see ipcAttach). `name` is one word without blanks, `window` the client's window,
    /// which must exist: records are delivered to it, and the hub tells by it that the tool lives.
    /// With a `nameCapacity` of 0 the unique name is kept here alone; otherwise it is also written
    /// to `nameBuffer`. The constructor returns normally in all cases; m_pName is empty where the
    /// hub was not reached or refused.
    ipc(const char* name, HWND window, std::uint32_t reserved, char* nameBuffer,
        std::uint32_t nameCapacity, int showErrors);
    /// Signs off.
    virtual ~ipc();
    ipc(const ipc&) = delete;
    ipc& operator=(const ipc&) = delete;

    virtual int noOperation(int, int) { return 0; }
    /// Handles one record, from inside the client window's procedure, and returns its result. An
    /// answer is written into record->text, at most as many bytes as record->replyLength held, and
    /// replyLength set to the count; a replyLength left alone returns the whole capacity.
    virtual int onRequest(int opcode, IpcMessage* record) = 0;

    /// With a name buffer of the caller's, the characters of the unique name. Without one, the
    /// bytes of the hub's whole answer ("1a2b Draftel;0", NUL included), 60 where none came.
    std::uint32_t m_nNameLength = 0;
    char* m_pName = nullptr;  ///< Owned; "Draftel;0".
};

/// The id of a process that has none: before it attaches, and of one that only looks.
inline constexpr HWND IPC_NO_IDENTITY = 0xFFFFFFFF;

// --- State of the process ------------------------------------------------------------------------

extern HWND ipcSelfId;     ///< Own client id, the sender of every record; -1 before, 0 in the hub.
extern HWND ipcHubWindow;  ///< The hub's window as last seen.
extern UINT ipcMessageId;  ///< 0: not attached, and nothing can be sent.
extern HWND ipcParentId;   ///< The tool that had this one launched, 0 for none.
extern bool ipcNoMutex;    ///< The platform has no mutexes.

// --- The block -----------------------------------------------------------------------------------

/// Opens mutex, mapping and view; non-zero when the block is mapped.
int ipcMemOpen();
/// While a record is on its way the block stays until that has its answer.
void ipcMemClose();
/// The lowest free slot, or null when none came free in 100 passes or the mutex was not had within
/// 5,000 ms. `bytes` is at most 1,024 and not otherwise looked at.
IpcMessage* ipcMemAlloc(std::size_t bytes);
void ipcMemFree(IpcMessage* slot);
LPARAM ipcMemOffset(const IpcMessage* slot);
/// Null for an offset that is no slot's.
IpcMessage* ipcMemAddress(LPARAM offset);

// --- The primitives ------------------------------------------------------------------------------

/// Sends a record and waits for the receiver's result. A non-zero `target` is sent to directly,
/// past the hub. `capacity` is in and out: the size of `reply` (at least 1), then the bytes copied;
/// it stays as it was when nothing came back. A text of 1,000 characters or more goes by a file,
/// one that makes more than IPC_SPILL_LIMIT bytes is not sent.
int ipcSend(int opcode, const char* text, HWND target, char* reply, int* capacity);
/// Hands a record to the hub, which carries it on to `target` (0: for the hub itself), and returns
/// the hub's result; no answer comes back.
int ipcPost(int opcode, const char* text, HWND target);
/// Takes a window message apart. Non-zero when it is a record, which then must go to ipcRelease; 0
/// also for a record's message with an offset that is no slot's, which deserves no more than the
/// default handling. The text of a record always ends in a NUL.
int ipcReceive(UINT message, WPARAM wParam, LPARAM lParam, IpcMessage** record, int* opcode);
void ipcRelease(IpcMessage* record);
/// Writes a text to a new file of the temporary folder. `path` has room for 260 bytes.
int ipcWriteSpill(char* path, const char* text);

// --- Coming and going ----------------------------------------------------------------------------

/// Finds the hub, or starts it hidden and waits up to 30 s for it, opens the block and signs on;
/// in the hub itself it only opens the block, and returns 0. `capacity` is the size of `nameBuffer`
/// and then the byte count of the hub's answer. Returns ipcSelfId, or 0 on failure. Messages of
/// this thread are dispatched during the wait.
HWND ipcAttach(const char* name, HWND window, char* nameBuffer, int* capacity, int showErrors);
/// Signs off and closes the block; the result of the sign-off, 0 if none was sent. Records that
/// still wait in this thread's queue are dropped, so that their slots come free. A window that
/// serves records must let go of its `ipc` object first: sent messages are served meanwhile.
int ipcDetach();
/// Reaches a running hub without signing on: no row, no name, nothing delivered. For a look from
/// outside. `window` (not 0) goes out as the sender; IPC_NO_IDENTITY will do. Ended by ipcMemClose
/// or with the process. Non-zero on success.
int ipcObserve(HWND window);
/// 1 if the hub runs or was started. The hub gets this program's own arguments.
int ipcStartHub(int showErrors);
/// Non-zero if the hub's window exists; keeps it in ipcHubWindow.
int ipcFindHub();
/// 1 if the first record that waits in this thread's queue has this sender and opcode and a text
/// that starts with `prefix`. The record is taken out of the queue whatever the answer and is not
/// released: its slot stays taken, so this is for the one record that a tool waits for.
int ipcPeekExpected(HWND sender, int opcode, const char* prefix);

// --- Requests ------------------------------------------------------------------------------------
// Each asks the hub and waits for its answer. Texts, among them names and files, are NUL-ended and
// have up to 999 bytes in all, without limit for ipcCommand. 0 comes back too where the hub cannot
// be reached, and where a text is too long to be sent; where 0 means success, such a text gives 1
// (the launches) or -1 (ipcSetEnv, ipcFileOpen, ipcFileQuery). A window of 0 names nobody.

/// Has the hub start `program` (a path or a name, in double quotes if it holds blanks) with
/// `arguments` (may be null) in this process's current directory, minimised with a `show` of 0.
/// `reserved` is not used. Returns 0 when it was started, or if there is no current directory; 2
/// for a text that the hub cannot use; else the system's error number. The tool's greeting
/// (IPC_CHILD_HELLO) comes once it has signed on.
int ipcLaunch(const char* program, const char* arguments, int reserved, int show);
/// The same; the hub answers once the tool waits for input, after 30 s at the latest, and serves
/// nobody meanwhile. 1 if there is no current directory.
int ipcLaunchWait(const char* program, const char* arguments, int reserved, int show);
/// ipcLaunchWait, then ipcFindApp(`name`). `*status` becomes 0 with the tool's window as the
/// result, or, with the result 0, 1 where the launch failed and 2 where nobody of that name has
/// signed on.
HWND ipcLaunchAndFind(const char* program, const char* arguments, int reserved, int show,
                      const char* name, int* status);
/// Sets a variable of the environment that the hub hands on to what it launches from now on.
/// `assignment` is a name, an equals sign and a value. 0 on success, -1 on failure.
int ipcSetEnv(const char* assignment);
/// The window of the tool with this unique name ("Draftel;0"), or of the newest one with this base
/// name; without regard to case. 0 if there is none.
HWND ipcFindApp(const char* name);
/// The unique name of the tool that has the window. `capacity` is in and out: the size of `buffer`,
/// then the bytes of the name, NUL included; a name that does not fit is cut without a NUL. 1, or 0
/// for a window of no tool; the buffer then holds nothing of use.
int ipcAppName(HWND window, char* buffer, int* capacity);

// Files that tools hold: the hub keeps account of them and touches none. A path that is not
// absolute is one of the hub's own directory; paths compare without regard to case. Access is 1 to
// read, 2 to write, 3 for both.

/// Enters the file as held by this tool, unless somebody, be it this tool, holds it with a bit of
/// the same access and not both only read. Returns 0 with `*isFree` 1 when entered (or when the hub
/// could not be reached), else the holder's window with `*isFree` 0; `holder` (may be null) gets
/// that window too and is left alone when there is none.
int ipcFileOpen(const char* file, int access, int* isFree, HWND* holder);
/// Who holds the file with a bit of this access, told as by ipcFileOpen; enters nothing.
int ipcFileQuery(const char* file, int access, int* isFree, HWND* holder);
/// Gives back an access that this tool holds, and the file's flags with it. 1, also when it was not
/// held.
int ipcFileClose(const char* file, int access);
/// Sets or clears bits beside a file that this tool holds; bit 0 shows as the mark "*" in the
/// activity list. Returns this tool's window, 0 if it does not hold the file.
int ipcFileSetFlags(const char* file, int bits);
int ipcFileClearFlags(const char* file, int bits);
/// Who has set just these flags beside the file (4,095: any at all). In: the flags, and a window
/// whose holding alone counts, 0 for all. Out: the holder's flags and window. Returns the holder's
/// window; 0 if there is none, with the flags 0 and the window left alone.
HWND ipcFileFindFlags(const char* file, int* flags, HWND* window);

/// Has the hub tell this tool when the other one departs: by a record IPC_DEPARTED with the text
/// "ORDERLY,WINDOW,NAME", of which the first is 1 for a sign-off and 0 for a death, and the window
/// hexadecimal. By the name as in ipcFindApp, or by the window. 1, or 0 for an unknown tool.
int ipcWatchName(const char* name);
int ipcWatchId(HWND window);
/// Hands free text to a tool, to which it comes as IPC_COMMAND: non-zero once the hub has posted
/// it, 0 for an unknown tool or without room. With a `target` of 0 the text is a word for the hub
/// itself, without regard to case: "SW_SHOW" and "JUNTORA_CLOSE_ALL_APPS" act and give 0,
/// "JUNTORA_ANY_APPS_RUNNING" gives the number of rows, "JUNTORA_IS_SKETCHEL_RUNNING" 1 or 0; any
/// other gives 0.
int ipcCommand(const char* text, HWND target);
/// 1 while the tool with this window is signed on, else 0.
int ipcIsAlive(HWND window);
/// Hands a tool the record IPC_STATUS with the text "TEXT CODE", the code decimal. Non-zero once
/// the hub has posted it, 0 for an unknown tool or without room.
int ipcStatus(HWND target, const char* text, int code);

}  // namespace juntora
