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
// Texts of up to 999 bytes in all, without limit for ipcCommand. A longer one is not sent and gives
// 0, or, where 0 means success, 1 (the launches) or -1 (ipcSetEnv, ipcFileOpen and ipcFileQuery).

int ipcLaunch(const char* program, const char* arguments, int reserved, int show);
int ipcLaunchWait(const char* program, const char* arguments, int reserved, int show);
HWND ipcLaunchAndFind(const char* program, const char* arguments, int reserved, int show,
                      const char* name, int* status);
int ipcSetEnv(const char* assignment);
HWND ipcFindApp(const char* name);
int ipcAppName(HWND window, char* buffer, int* capacity);
int ipcFileOpen(const char* file, int access, int* isFree, HWND* holder);
int ipcFileQuery(const char* file, int access, int* isFree, HWND* holder);
int ipcFileClose(const char* file, int access);
int ipcFileSetFlags(const char* file, int bits);
int ipcFileClearFlags(const char* file, int bits);
HWND ipcFileFindFlags(const char* file, int* flags, HWND* window);
int ipcWatchName(const char* name);
int ipcWatchId(HWND window);
int ipcCommand(const char* text, HWND target);
int ipcIsAlive(HWND window);
int ipcStatus(HWND target, const char* text, int code);

}  // namespace juntora
