// The queue of one thread: its mail, its sleep, its timers.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "platform/desktop/Attachment.h"
#include "platform/desktop/Doorbell.h"
#include "platform/desktop/ForeignLoop.h"
#include "platform/desktop/Patience.h"
#include "platform/desktop/Timers.h"
#include "platform/desktop/WatchedDescriptors.h"

namespace juntora::desktop {

class Queue {
public:
    /// The calling thread's queue, made by the first call; null without a desktop or when the
    /// desktop holds no more queues.
    static Queue* current();

    ~Queue();
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    Attachment& desktop() { return m_desktop; }
    Segment& segment() { return m_desktop.segment(); }
    std::uint32_t thread() const { return m_thread; }
    std::uint32_t generation() const { return m_generation; }
    Mailbox& mailbox() { return *m_mailbox; }
    Timers& timers() { return m_timers; }
    const Timers& timers() const { return m_timers; }
    Patience& patience() { return m_patience; }

    // --- Mail ---------------------------------------------------------------------------------

    /// Serves what has been sent to this thread, up to a number that lets other work come up too.
    /// Whether there was any.
    bool serveSent();
    /// What is to be looked after when a send waits for long: every 50 ms then. Null for nothing.
    void setLongWait(std::function<void()> work) { m_longWait = std::move(work); }
    void workInLongWait();
    bool hasSent() const { return m_mailbox->sent.hasWork(); }
    /// Takes the oldest posted message of this window (0: any) with a number in the range (both 0:
    /// any); with `keep` it stays in its place.
    bool takePosted(HWND window, UINT first, UINT last, bool keep, MSG* message);
    bool ringIfAsleep(std::uint32_t thread);
    /// For what has been posted: rings at once, or, while a sent message is being served, together
    /// with what is posted next, before this thread waits for anything at the latest. Who passes
    /// records on one by one would else wake their receiver for each.
    void ringForPost(std::uint32_t thread);
    /// Rings what has been put off.
    void ringNow();
    /// The same for the calling thread, if it has a queue. Before it blocks.
    static void ringBeforeBlocking();

    std::optional<int> quitCode;

    // --- Sleep --------------------------------------------------------------------------------

    WatchedDescriptors& watched() { return m_watched; }
    /// Sleeps until there is mail, a timer is due or a watched descriptor is ready.
    void waitForWork();
    /// Sets the bell so that mail and timers make the foreign loop's descriptor readable, which it
    /// becomes at once if there is work. False without descriptors.
    bool lieDownInForeignLoop();
    /// Takes what has made that descriptor readable.
    void wakeInForeignLoop();
    int foreignDescriptor() const { return m_foreignLoop.descriptor(); }
    /// Sleeps until something is sent to this thread or `descriptor` has one of poll's `events`, at
    /// most `milliseconds`: for a wait that serves what is sent and nothing that is posted.
    void waitForSentOr(int descriptor, short events, int milliseconds);
    /// Sleeps inside a send until mail or a reply arrives or `receiver` dies, at most
    /// `milliseconds`.
    void waitInSend(std::uint32_t receiver, const std::atomic<std::uint64_t>& reply,
                    std::uint64_t waiting, std::uint32_t milliseconds);

    // --- Sends under way ----------------------------------------------------------------------

    std::uint32_t sendDepth = 0;
    std::uint32_t textTop = 0;  ///< Bytes of the text area in use.

private:
    Queue(Attachment& desktop, std::uint32_t thread, std::uint32_t generation);
    static Queue* make();
    void answer(const SentMessage& sent);
    bool awaitWork();
    bool hasWork() const { return hasSent() || m_mailbox->posted.hasWork() || !m_kept.empty(); }
    std::uint32_t sleepAs(BellState state);
    void wakeUp();
    void noteIdle();

    Attachment& m_desktop;
    const std::uint32_t m_thread;
    const std::uint32_t m_generation;
    Mailbox* const m_mailbox;
    /// Taken out of the ring by a search that wanted another message, oldest first.
    std::deque<PostedMessage> m_kept;
    Timers m_timers;
    WatchedDescriptors m_watched;
    ForeignLoop m_foreignLoop;
    BellRopes m_ropes;
    Patience m_patience;
    bool m_hasBeenIdle = false;
    std::function<void()> m_longWait;
    std::uint32_t m_servingDepth = 0;
    /// Of the last message that was served: it was sent, and its sender was awake for the answer.
    bool m_lastWasSent = false;
    bool m_senderWasAwake = false;
    /// Or was woken, and runs on this core as soon as it is free.
    bool m_senderNeedsCore = false;
    /// Threads whose bells are put off, and for how many messages.
    std::vector<std::uint32_t> m_deferred;
    std::uint32_t m_deferredPosts = 0;
};

/// The window procedure of a window of the calling thread, with what it throws caught: nothing may
/// pass through a message loop. 0 for a window that is not this thread's.
LRESULT callWindow(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace juntora::desktop
