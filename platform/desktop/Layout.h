// What lies in a desktop's shared segment. Every process on the desktop maps it, so a change to
// anything here is a change of LAYOUT_VERSION.
//
// Three ways of writing keep it whole when a writer dies at any instruction:
//  - single words, published by one atomic store or exchange;
//  - rings (Ring.h), which need no lock;
//  - all else under Segment::lock, in an order that lets the next holder tell what was finished and
//    throw away what was not (Mend.cpp).
#pragma once

#include <pthread.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "platform/desktop/Ring.h"
#include "platform/types.h"

namespace juntora::desktop {

inline constexpr std::uint64_t SEGMENT_MAGIC = 0x61726f746e754a56;  // "VJuntora"
inline constexpr std::uint32_t LAYOUT_VERSION = 4;

inline constexpr std::uint32_t MAX_PROCESSES = 2048;
inline constexpr std::uint32_t MAX_THREADS = 2048;
inline constexpr std::uint32_t MAX_WINDOWS = 32768;
inline constexpr std::uint32_t MAX_NAMES = 4096;
inline constexpr std::uint32_t MAX_OBJECTS = 32768;
inline constexpr std::uint32_t MAX_HOLDS = 131072;
inline constexpr std::uint32_t MAX_STARTS = 256;
inline constexpr std::uint32_t INDEX_BUCKETS = 8192;
inline constexpr std::uint32_t MAX_SEND_DEPTH = 32;
inline constexpr std::size_t SENT_RING_CELLS = 2048;
inline constexpr std::size_t POSTED_RING_CELLS = 16384;
/// Texts on their way with sent messages: one full-sized text and what is nested in it.
inline constexpr std::uint32_t TEXT_AREA_BYTES = 128 * 1024;
inline constexpr std::uint32_t NONE = 0xFFFFFFFF;

/// A process on the desktop. It holds byte 1 + index of the folder's lock file while it lives.
struct ProcessSlot {
    std::atomic<std::uint32_t> live;  ///< 1 from attach to departure or sweep.
    std::atomic<std::uint32_t> kernelId;
};

/// A thread with a queue. `life` is a robust mutex that the thread holds as long as it lives: the
/// kernel marks its word when the thread dies, so that one load tells.
struct alignas(64) ThreadSlot {
    pthread_mutex_t life;
    std::atomic<std::uint32_t> generation;  ///< Odd while the slot is a thread's.
    std::atomic<std::uint32_t> process;
    std::atomic<std::uint32_t> kernelId;  ///< Of the process.
};

/// What a thread that waits for a reply looks at: its own turn's number and, once the receiver has
/// answered, the result. One word, so that there is no half of an answer.
struct alignas(64) ReplySlot {
    std::atomic<std::uint64_t> word;  ///< Turn << 33 | answered << 32 | result.
};

constexpr std::uint64_t waitingWord(std::uint32_t turn) { return std::uint64_t{turn} << 33; }
constexpr std::uint64_t answeredWord(std::uint32_t turn, std::uint32_t result) {
    return waitingWord(turn) | std::uint64_t{1} << 32 | result;
}
constexpr std::uint32_t turnOf(std::uint64_t word) {
    return static_cast<std::uint32_t>(word >> 33);
}
constexpr LRESULT resultOf(std::uint64_t word) { return static_cast<std::int32_t>(word); }

enum class TextWay : std::uint32_t { NO_TEXT, IN, OUT };

struct SentMessage {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    std::uint32_t sender;  ///< Thread index.
    std::uint32_t replySlot;
    std::uint32_t turn;
    TextWay textWay;
    std::uint32_t textOffset;  ///< In the sender's text area; bytes IN, capacity OUT.
    std::uint32_t textBytes;
};

struct PostedMessage {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

/// A thread's mail. `bell` says how its owner sleeps (Doorbell.h).
struct alignas(64) Mailbox {
    std::atomic<std::uint32_t> bell;
    alignas(64) std::atomic<std::uint32_t> looks;  ///< How often the owner has looked at its mail.
    std::atomic<std::uint32_t> core;               ///< Where it ran then.
    alignas(64) ReplySlot replies[MAX_SEND_DEPTH];
    Ring<SentMessage, SENT_RING_CELLS> sent;
    Ring<PostedMessage, POSTED_RING_CELLS> posted;
    char texts[TEXT_AREA_BYTES];
};

/// What every look at a window needs.
struct WindowSlot {
    std::atomic<HWND> live;  ///< The window's handle, 0 while there is none.
    std::atomic<std::uint32_t> thread;
    std::atomic<std::uint32_t> threadGeneration;
    std::atomic<std::uint32_t> lastGeneration;  ///< Of the handle given out last.
    std::atomic<std::uint32_t> changes;
    std::atomic<std::uint32_t> style;
    std::atomic<std::uint32_t> extendedStyle;
    std::atomic<std::uint32_t> parent;
};

inline constexpr std::size_t CLASS_NAME_BYTES = 64;
inline constexpr std::size_t TITLE_BYTES = 512;

/// The rest of a window; texts are read and written under the lock.
struct WindowDetails {
    std::atomic<std::int64_t> order;  ///< Higher is further in front.
    std::atomic<std::int32_t> id;
    std::atomic<LONG> x, y, width, height;  ///< Relative to the parent.
    std::atomic<HWND> owner;                ///< Of a top-level window; 0 for none.
    std::atomic<std::int32_t> icon;         ///< Resource number, 0 for none.
    std::uint32_t hash;                     ///< Of class and title.
    std::uint32_t nextInBucket;
    char className[CLASS_NAME_BYTES];
    /// A new title is written beside the old one and then published by `titleAt`.
    char titles[2][TITLE_BYTES];
    std::atomic<std::uint32_t> titleAt;
};

struct MessageName {
    char text[256];
};

enum class ObjectKind : std::uint32_t { NO_OBJECT, MUTEX, SEMAPHORE, MAPPING };

inline constexpr std::size_t OBJECT_NAME_BYTES = 512;

struct NamedObject {
    std::atomic<ObjectKind> live;
    std::uint32_t generation;
    std::uint32_t hash;
    std::uint32_t nextInBucket;  ///< 1 + index, 0 at the end; a free one: of the next free one.
    std::uint32_t firstHold;
    pthread_mutex_t mutex;
    std::atomic<std::uint32_t> count;  ///< Semaphore: what may still be taken.
    std::uint32_t maximum;
    std::uint64_t bytes;  ///< Mapping.
    /// A change of `count` together with a hold's `taken`, written down before it is made.
    std::atomic<std::uint32_t> journalHold;  ///< 1 + index, 0 for none.
    std::uint32_t journalCount;
    std::int32_t journalTaken;
    char name[OBJECT_NAME_BYTES];
};

/// One handle of one process to one object.
struct ObjectHold {
    std::atomic<std::uint32_t> object;  ///< 1 + index, 0 while free.
    std::uint32_t process;
    std::uint32_t next;               ///< Of the same object; a free one: 1 + the next free one.
    std::atomic<std::int32_t> taken;  ///< Semaphore counts taken and not released.
};

/// What a starter tells a child beside its arguments, and what the child tells back.
struct StartRecord {
    std::atomic<std::uint64_t> token;    ///< 0 while free.
    std::atomic<std::uint32_t> claimed;  ///< 1 once the child has taken it.
    std::atomic<std::uint32_t> idle;     ///< 1 once the child waited in an empty loop.
    std::uint32_t starter;               ///< Process index.
    std::int32_t showState;              ///< -1 for none.
    char commandLine[4096];
};

struct Segment {
    std::uint64_t magic;
    std::uint32_t layout;
    std::uint32_t reserved;
    std::uint64_t bytes;
    pthread_mutex_t lock;

    /// Counts everything that may change the answer to a search for a window.
    alignas(64) std::atomic<std::uint32_t> windowChanges;

    /// Counts everything that may change what a viewer shows; it sleeps on this word.
    alignas(64) std::atomic<std::uint32_t> viewChanges;
    std::atomic<std::uint32_t> viewWaits;  ///< 1 while a viewer may sleep.

    alignas(64) std::atomic<std::int64_t> frontOrder;
    std::atomic<std::int64_t> backOrder;
    std::atomic<HWND> foreground;
    std::atomic<std::uint32_t> windowLimit;  ///< No window has been at this index or above.
    std::uint32_t nextWindow;                ///< Where the search for a free index starts.
    std::atomic<std::uint32_t> threadLimit;
    std::atomic<std::uint32_t> nameCount;
    std::uint32_t objectLimit;      ///< No object has been at this index or above.
    std::uint32_t firstFreeObject;  ///< Below the limit: 1 + index, 0 for none.
    std::uint32_t holdLimit;
    std::uint32_t firstFreeHold;
    std::uint64_t lastToken;

    std::uint32_t windowBuckets[INDEX_BUCKETS];
    std::uint32_t objectBuckets[INDEX_BUCKETS];
    ProcessSlot processes[MAX_PROCESSES];
    ThreadSlot threads[MAX_THREADS];
    WindowSlot windows[MAX_WINDOWS];
    MessageName names[MAX_NAMES];
    ObjectHold holds[MAX_HOLDS];
    StartRecord starts[MAX_STARTS];
    NamedObject objects[MAX_OBJECTS];
    WindowDetails details[MAX_WINDOWS];
    Mailbox mailboxes[MAX_THREADS];
};

static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
static_assert(MAX_WINDOWS <= 0x8000, "an index and 15 bits of generation make a handle");

}  // namespace juntora::desktop
