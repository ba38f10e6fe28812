#include "platform/desktop/Queue.h"

#include <poll.h>
#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <memory>

#include "platform/desktop/Core.h"
#include "platform/desktop/Futex.h"
#include "platform/desktop/Life.h"
#include "platform/desktop/Lock.h"
#include "platform/desktop/Sweep.h"
#include "platform/desktop/TextTransfer.h"
#include "platform/kernel/StartRecords.h"

namespace juntora::desktop {
namespace {

constexpr int SERVED_IN_A_ROW = 64;
/// A quarter of the slots that records travel in.
constexpr std::uint32_t POSTS_BEFORE_RINGING = 16;

thread_local Queue* t_queue = nullptr;

void endThreadQueue(void* queue) {
    t_queue = nullptr;
    const std::unique_ptr<Queue> ended(static_cast<Queue*>(queue));
}

/// Its destructor runs at a thread's end, and not at the process's, where the main thread's queue
/// must outlast the static objects that still talk through it.
pthread_key_t threadEndKey() {
    static const pthread_key_t key = [] {
        pthread_key_t made{};
        pthread_key_create(&made, &endThreadQueue);
        return made;
    }();
    return key;
}

bool isOf(const PostedMessage& message, HWND window, UINT first, UINT last) {
    return (window == 0 || message.window == window) &&
           ((first == 0 && last == 0) || (message.message >= first && message.message <= last));
}

}  // namespace

Queue* Queue::current() { return t_queue != nullptr ? t_queue : make(); }

Queue* Queue::make() {
    Attachment* desktop = Attachment::get();
    if (desktop == nullptr) {
        return nullptr;
    }
    std::uint32_t generation = 0;
    std::uint32_t thread = NONE;
    {
        const SegmentLock lock(desktop->segment());
        if (lock) {
            thread = claimThread(*desktop, &generation);
        }
    }
    if (thread == NONE) {
        return nullptr;
    }
    t_queue = std::unique_ptr<Queue>(new Queue(*desktop, thread, generation)).release();
    pthread_setspecific(threadEndKey(), t_queue);
    return t_queue;
}

Queue::Queue(Attachment& desktop, std::uint32_t thread, std::uint32_t generation)
    : m_desktop(desktop),
      m_thread(thread),
      m_generation(generation),
      m_mailbox(&desktop.segment().mailboxes[thread]),
      m_watched(m_mailbox->bell) {
    // What was on its way to the slot's last owner is for nobody.
    m_mailbox->bell = AWAKE;
    SentMessage sent;
    while (m_mailbox->sent.pop(&sent)) {
    }
    PostedMessage posted;
    while (m_mailbox->posted.pop(&posted)) {
    }
}

Queue::~Queue() {
    const SegmentLock lock(segment());
    if (lock) {
        releaseThread(m_desktop, m_thread);
    }
}

void leaveQueueOfExitingThread() {
    if (t_queue != nullptr) {
        pthread_setspecific(threadEndKey(), nullptr);
        endThreadQueue(t_queue);
    }
}

void forgetQueuesInForkedChild() {
    // The object is left alone, and kept in reach: it is the parent's, who goes on using what it
    // stands for.
    static std::atomic<Queue*> parents;
    if (t_queue != nullptr) {
        parents = t_queue;
    }
    t_queue = nullptr;
    pthread_setspecific(threadEndKey(), nullptr);
}

bool Queue::serveSent() {
    m_mailbox->looks.store(m_mailbox->looks.load(std::memory_order_relaxed) + 1,
                           std::memory_order_relaxed);
    m_mailbox->core.store(currentCore(), std::memory_order_relaxed);
    SentMessage sent;
    int served = 0;
    while (served < SERVED_IN_A_ROW && m_mailbox->sent.pop(&sent)) {
        ++m_servingDepth;
        answer(sent);
        --m_servingDepth;
        ++served;
    }
    m_lastWasSent = m_lastWasSent || served > 0;
    return served > 0;
}

void Queue::workInLongWait() {
    if (m_longWait) {
        m_longWait();
    }
}

void Queue::answer(const SentMessage& sent) {
    if (sent.sender >= MAX_THREADS || sent.replySlot >= MAX_SEND_DEPTH) {
        return;
    }
    Mailbox& sender = segment().mailboxes[sent.sender];
    IncomingText text(sent, sender);
    const LRESULT result = callWindow(sent.window, sent.message, sent.wParam, text.lParam());
    text.giveBack(result);
    std::uint64_t waiting = waitingWord(sent.turn);
    const std::uint64_t answered = answeredWord(sent.turn, static_cast<std::uint32_t>(result));
    // Refused where the sender has given up, or its slot is another's by now.
    if (sender.replies[sent.replySlot].word.compare_exchange_strong(waiting, answered)) {
        m_senderWasAwake = !ringIfAsleep(sent.sender);
        m_senderNeedsCore =
            !m_senderWasAwake && sender.core.load(std::memory_order_relaxed) == currentCore();
    }
}

bool Queue::ringIfAsleep(std::uint32_t thread) {
    std::atomic<std::uint32_t>& bell = segment().mailboxes[thread].bell;
    const std::uint32_t seen = bell.load();
    if (!isAsleep(seen)) {
        return false;
    }
    ring(bell, seen, m_desktop.folderDescriptor(), thread, m_ropes);
    return true;
}

void Queue::ringForPost(std::uint32_t thread) {
    if (m_servingDepth == 0) {
        ringIfAsleep(thread);
        return;
    }
    if (std::find(m_deferred.begin(), m_deferred.end(), thread) == m_deferred.end()) {
        m_deferred.push_back(thread);
    }
    if (++m_deferredPosts >= POSTS_BEFORE_RINGING) {
        ringNow();
    }
}

void Queue::ringNow() {
    for (const std::uint32_t thread : m_deferred) {
        ringIfAsleep(thread);
    }
    m_deferred.clear();
    m_deferredPosts = 0;
}

void Queue::ringBeforeBlocking() {
    if (t_queue != nullptr) {
        t_queue->ringNow();
    }
}

bool Queue::takePosted(HWND window, UINT first, UINT last, bool keep, MSG* message) {
    auto found = m_kept.begin();
    while (found != m_kept.end() && !isOf(*found, window, first, last)) {
        ++found;
    }
    PostedMessage next;
    while (found == m_kept.end()) {
        if (m_kept.size() >= POSTED_RING_CELLS || !m_mailbox->posted.pop(&next)) {
            return false;
        }
        if (!keep && isOf(next, window, first, last)) {
            *message = {next.window, next.message, next.wParam, next.lParam, 0, {}};
            return true;
        }
        m_kept.push_back(next);
        found = m_kept.end();
        if (isOf(next, window, first, last)) {
            --found;
        }
    }
    *message = {found->window, found->message, found->wParam, found->lParam, 0, {}};
    if (!keep) {
        m_kept.erase(found);
    }
    return true;
}

std::uint32_t Queue::sleepAs(BellState state) {
    const std::uint32_t bell = nextSleep(m_mailbox->bell.load(std::memory_order_relaxed), state);
    m_mailbox->bell.store(bell);
    return bell;
}

void Queue::wakeUp() {
    const std::uint32_t bell = m_mailbox->bell.load(std::memory_order_relaxed);
    m_mailbox->bell.store(bell & ~BELL_STATE_BITS, std::memory_order_relaxed);
}

/// Spins where that is promising; whether work has come.
bool Queue::awaitWork() {
    const auto workHasCome = [this] { return hasWork(); };
    // A sender that spins is likely to ask again at once; what that request has posted rings
    // together with what this one has.
    if (m_senderWasAwake && m_patience.next.until(workHasCome)) {
        m_patience.request.encourage();
        return true;
    }
    ringNow();
    // Nobody waits for the end of a posted message: there is no hurry to be awake for the next one,
    // and those who send it may need the core.
    return m_lastWasSent && !m_senderNeedsCore ? m_patience.request.until(workHasCome) : hasWork();
}

void Queue::waitForWork() {
    const bool hasCome = awaitWork();
    m_lastWasSent = false;
    m_senderWasAwake = false;
    m_senderNeedsCore = false;
    if (hasCome) {
        return;
    }
    noteIdle();
    m_watched.lookAfter();
    const std::uint32_t bell = sleepAs(IN_FUTEX);
    if (!hasWork() && !m_watched.isReady()) {
        futexWaitUntil({&m_mailbox->bell, bell}, m_timers.nextDue());
    }
    wakeUp();
}

bool Queue::lieDownInForeignLoop() {
    if (!m_foreignLoop.open(m_desktop.folderDescriptor(), m_thread)) {
        return false;
    }
    ringNow();
    noteIdle();
    if (m_watched.descriptor() >= 0) {
        m_foreignLoop.include(m_watched.descriptor());
    }
    m_foreignLoop.wakeAt(m_timers.nextDue());
    sleepAs(IN_POLL);
    if (hasWork()) {
        m_foreignLoop.wakeNow();
    }
    return true;
}

void Queue::wakeInForeignLoop() {
    wakeUp();
    if (m_foreignLoop.isOpen()) {
        m_foreignLoop.clear();
    }
    m_watched.callReady();
}

void Queue::waitForSentOr(int descriptor, short events, int milliseconds) {
    // Without descriptors for a bell the thread looks after its mail by the clock.
    constexpr int LOOK_MILLISECONDS = 10;
    const bool hasBell = m_foreignLoop.open(m_desktop.folderDescriptor(), m_thread);
    ringNow();
    if (hasBell) {
        sleepAs(IN_POLL);
    }
    pollfd waits[] = {{descriptor, events, 0}, {m_foreignLoop.bell(), POLLIN, 0}};
    if (!hasSent()) {
        poll(waits, 2, hasBell ? milliseconds : std::min(milliseconds, LOOK_MILLISECONDS));
    }
    if (hasBell) {
        wakeUp();
    }
    if (waits[1].revents != 0) {
        m_foreignLoop.clear();
    }
}

void Queue::noteIdle() {
    if (!m_hasBeenIdle) {
        m_hasBeenIdle = true;
        kernel::noteInputIdle();
    }
}

void Queue::waitInSend(std::uint32_t receiver, const std::atomic<std::uint64_t>& reply,
                       std::uint64_t waiting, std::uint32_t milliseconds) {
    std::atomic<std::uint32_t>& life = lifeWord(segment().threads[receiver]);
    // The kernel wakes somebody at the owner's death only if this bit says that somebody waits.
    std::uint32_t alive = life.load();
    if ((alive & FUTEX_OWNER_DIED) != 0 || (alive & FUTEX_TID_MASK) == 0) {
        return;
    }
    if ((alive & FUTEX_WAITERS) == 0 &&
        !life.compare_exchange_strong(alive, alive | FUTEX_WAITERS)) {
        return;
    }
    ringNow();
    const std::uint32_t bell = sleepAs(IN_FUTEX);
    if (reply.load() == waiting && !hasSent()) {
        futexWait({&m_mailbox->bell, bell}, {&life, alive | FUTEX_WAITERS}, milliseconds);
    }
    wakeUp();
}

}  // namespace juntora::desktop
