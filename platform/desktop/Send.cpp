// Sent messages: out, wait, result.
#include "platform/desktop/Address.h"
#include "platform/desktop/Core.h"
#include "platform/desktop/Futex.h"
#include "platform/desktop/Sweep.h"
#include "platform/desktop/TextTransfer.h"
#include "platform/desktop/message.h"
#include "platform/kernel/StartRecords.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace desktop {
namespace {

/// How long a waiting sender sleeps before it looks for itself whether its receiver lives: well
/// below the 100 ms in which a death is to be told, and rare enough to cost nothing.
constexpr std::uint32_t LOOK_AGAIN_MILLISECONDS = 50;

/// A reply slot of this thread for the length of one send.
class Turn {
public:
    explicit Turn(Queue& queue) : m_queue(queue), m_depth(queue.sendDepth) {
        if (m_depth < MAX_SEND_DEPTH) {
            ++queue.sendDepth;
            std::atomic<std::uint64_t>& word = reply();
            // Never the number of an earlier turn: an answer to that one must not fit this one.
            m_number = (turnOf(word.load()) + 1) & 0x7FFFFFFF;
            word.store(waiting(), std::memory_order_relaxed);
        }
    }
    ~Turn() {
        if (isOk()) {
            m_queue.sendDepth = m_depth;
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    bool isOk() const { return m_depth < MAX_SEND_DEPTH; }
    std::uint32_t slot() const { return m_depth; }
    std::uint32_t number() const { return m_number; }
    std::uint64_t waiting() const { return waitingWord(m_number); }
    std::atomic<std::uint64_t>& reply() { return m_queue.mailbox().replies[m_depth].word; }
    bool isAnswered() { return reply().load(std::memory_order_acquire) != waiting(); }
    LRESULT result() { return resultOf(reply().load()); }
    /// Takes the slot back, unless the answer has come after all.
    bool giveUp() {
        std::uint64_t still = waiting();
        return reply().compare_exchange_strong(still, answeredWord(m_number, 0));
    }

private:
    Queue& m_queue;
    const std::uint32_t m_depth;
    std::uint32_t m_number = 0;
};

/// Watches a receiver for signs that its thread still turns to its mail.
class HungWatch {
public:
    HungWatch(Queue& queue, std::uint32_t thread, DWORD milliseconds)
        : m_queue(queue),
          m_thread(thread),
          m_limit(milliseconds),
          m_looks(looks()),
          m_since(nowMilliseconds()) {}

    /// To be asked about every LOOK_AGAIN_MILLISECONDS.
    bool isHung() {
        if (m_limit == INFINITE) {
            return false;
        }
        const std::uint32_t now = looks();
        if (now != m_looks) {
            m_looks = now;
            m_since = nowMilliseconds();
        }
        // A thread that sleeps well looks at its mail when rung; a stopped one does not.
        m_queue.ringIfAsleep(m_thread);
        return nowMilliseconds() - m_since >= static_cast<std::int64_t>(m_limit);
    }

private:
    std::uint32_t looks() { return m_queue.segment().mailboxes[m_thread].looks.load(); }

    Queue& m_queue;
    const std::uint32_t m_thread;
    const DWORD m_limit;
    std::uint32_t m_looks;
    std::int64_t m_since;
};

enum class Outcome { ANSWERED, RECEIVER_GONE, RECEIVER_HUNG };

bool runsHere(Queue& queue, std::uint32_t thread) {
    return queue.segment().mailboxes[thread].core.load(std::memory_order_relaxed) == currentCore();
}

/// Whether to spin for the answer of a receiver that has just been woken: not on the core that it
/// needs. When a spin is due all the same, this thread leaves that core to it first.
bool maySpinFor(Queue& queue, const Address& to) {
    if (!runsHere(queue, to.thread)) {
        return true;
    }
    if (!queue.patience().reply.isDue()) {
        return false;
    }
    leaveCore(currentCore());
    return true;
}

Outcome awaitAnswer(Queue& queue, Turn& turn, const Address& to, bool wasAsleep,
                    DWORD hungMilliseconds) {
    const auto somethingCame = [&] { return turn.isAnswered() || queue.hasSent(); };
    ThreadSlot& receiver = queue.segment().threads[to.thread];
    if ((!wasAsleep || maySpinFor(queue, to)) && queue.patience().reply.until(somethingCame) &&
        turn.isAnswered()) {
        return Outcome::ANSWERED;
    }
    HungWatch watch(queue, to.thread, hungMilliseconds);
    while (!turn.isAnswered()) {
        if (queue.serveSent()) {
            continue;
        }
        if (!threadLives(receiver, to.generation)) {
            return turn.isAnswered() ? Outcome::ANSWERED : Outcome::RECEIVER_GONE;
        }
        if (watch.isHung()) {
            return turn.giveUp() ? Outcome::RECEIVER_HUNG : Outcome::ANSWERED;
        }
        queue.ringIfAsleep(to.thread);
        kernel::noteWaitFor(queue.segment().threads[to.thread].process);
        queue.waitInSend(to.thread, turn.reply(), turn.waiting(), LOOK_AGAIN_MILLISECONDS);
        if (!somethingCame()) {
            queue.workInLongWait();
        }
    }
    return Outcome::ANSWERED;
}

/// The death may have woken this thread alone, and others wait too.
void passOnDeath(Queue& queue, const Address& to) {
    futexWakeAll(&lifeWord(queue.segment().threads[to.thread]));
    sweepDeadThread(to.thread);
}

BOOL sendToThread(Queue& queue, const Address& to, SentMessage sent, DWORD hungMilliseconds,
                  LRESULT* result) {
    Turn turn(queue);
    if (!turn.isOk()) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    OutgoingText text(queue, &sent);
    sent.sender = queue.thread();
    sent.replySlot = turn.slot();
    sent.turn = turn.number();
    if (!text.isOk() || !queue.segment().mailboxes[to.thread].sent.push(sent)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    const bool wasAsleep = queue.ringIfAsleep(to.thread);
    switch (awaitAnswer(queue, turn, to, wasAsleep, hungMilliseconds)) {
        case Outcome::ANSWERED:
            *result = turn.result();
            text.takeBack(sent, *result);
            return 1;
        case Outcome::RECEIVER_GONE:
            passOnDeath(queue, to);
            SetLastError(ERROR_INVALID_WINDOW_HANDLE);
            return 0;
        case Outcome::RECEIVER_HUNG:
            SetLastError(ERROR_TIMEOUT);
            return 0;
    }
    return 0;
}

BOOL send(HWND window, UINT message, WPARAM wParam, LPARAM lParam, DWORD hungMilliseconds,
          LRESULT* result) {
    Queue* queue = Queue::current();
    Address to{};
    if (queue == nullptr || !addressOrSweep(queue->segment(), window, &to)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    if (to.thread == queue->thread()) {
        *result = callWindow(window, message, wParam, lParam);
        return 1;
    }
    if ((hungMilliseconds != INFINITE && textWayOf(message) != TextWay::NO_TEXT) ||
        isOwnersAlone(message)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const SentMessage sent{window, message, wParam, lParam, 0, 0, 0, TextWay::NO_TEXT, 0, 0};
    return sendToThread(*queue, to, sent, hungMilliseconds, result);
}

}  // namespace

bool addressOrSweep(Segment& segment, HWND window, Address* address) {
    if (addressOf(segment, window, address)) {
        return true;
    }
    if (isCurrent(segment, window)) {
        sweepDeadThread(segment.windows[indexOf(window)].thread.load() % MAX_THREADS);
    }
    return false;
}

}  // namespace desktop

LRESULT SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    return desktop::send(window, message, wParam, lParam, INFINITE, &result) ? result : 0;
}

BOOL SendMessageUnlessHung(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                           DWORD hungMilliseconds, LRESULT* result) {
    return desktop::send(window, message, wParam, lParam, hungMilliseconds, result);
}

}  // namespace juntora
