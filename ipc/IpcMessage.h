// The record that travels between processes, the block it travels in, and its opcodes: wire
// formats.
#pragma once

#include <cstddef>
#include <cstdint>

namespace juntora {

/// The protocol's version, tested for equality at sign-on.
inline constexpr int IPC_VERSION = 117'707;

inline constexpr char IPC_BLOCK_NAME[] = "ohmara@mem.tmp";
inline constexpr char IPC_MUTEX_NAME[] = "OhmaraMemMapMutexName";
inline constexpr char IPC_MESSAGE_NAME[] = "ohmaraMsg16.6.0";
inline constexpr char HUB_WINDOW_CLASS[] = "TarvexVoltaraJuntoraWnd16.6.0";
inline constexpr char HUB_WINDOW_TITLE[] = "Voltara Juntora";

/// What a sender may put into a slot's text, NUL included; longer texts go by a file.
inline constexpr int IPC_TEXT_LIMIT = 1000;
/// What the field holds.
inline constexpr int IPC_TEXT_FIELD = 1004;
/// What a text that goes by a file may have, NUL included: a receiver makes room for it at once.
inline constexpr int IPC_SPILL_LIMIT = 64 * 1024 * 1024;
inline constexpr char IPC_SPILL_PREFIX[] = "IPC";

struct IpcMessage {
    std::uint32_t target;  ///< Window of the addressee, 0 for the hub.
    std::uint32_t sender;  ///< Client id of the sender, 0 from the hub.
    /// On the way there the capacity for the reply, -1 for none wanted, 0 on a posted copy; on the
    /// way back the bytes of `text` to copy.
    std::int32_t replyLength;
    /// 0, or the length of the real text with its NUL, when `text` is the path of the file it is
    /// in.
    std::int32_t spillLength;
    /// 0 in a slot. In a receiver's expanded copy: the offset in the block of the slot that it came
    /// from, since an address may be wider than the field.
    std::uint32_t link;
    char text[IPC_TEXT_FIELD];
};
static_assert(sizeof(IpcMessage) == 1024 && offsetof(IpcMessage, text) == 20);

struct IpcSlotBlock {
    std::uint8_t isFree[64];  ///< Non-zero: the slot may be taken.
    IpcMessage slots[64];
};
static_assert(sizeof(IpcSlotBlock) == 65'600);

enum IpcOpcode : int {
    IPC_SIGN_ON = 10,
    IPC_SIGN_OFF = 11,
    IPC_FIND_APP = 13,
    IPC_APP_NAME = 14,
    IPC_CHILD_HELLO = 15,
    IPC_WATCH = 16,
    IPC_DEPARTED = 17,
    IPC_LAUNCH = 18,
    IPC_SET_ENV = 19,
    IPC_FILE_OPEN = 20,
    IPC_FILE_QUERY = 21,
    IPC_FILE_CLOSE = 22,
    IPC_FILE_SET_FLAGS = 24,
    IPC_FILE_CLEAR_FLAGS = 25,
    IPC_FILE_FIND_FLAGS = 26,
    IPC_COMMAND = 30,
    IPC_IS_ALIVE = 31,
    IPC_STATUS = 50,
    IPC_LAUNCH_WAIT = 71,
};

}  // namespace juntora
