// A bounded queue in shared memory with many producers and one consumer, in which nobody ever waits
// for somebody else: a producer may be killed or stopped at any instruction.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace juntora::desktop {

/// The ring's cells lie in zeroed shared memory; a zeroed ring is an empty one.
///
/// Each cell carries one word, its ticket (how many cells of the ring came before it, lap by lap)
/// above a status. A producer claims the lowest free cell, fills it and publishes it. A consumer
/// that finds a claimed cell does not wait for its producer, which may be stopped or dead: it marks
/// the cell skipped and goes on. The producer, should it come back, finds its publishing refused,
/// acknowledges, and takes another cell; only then may the cell be used again, since a sleeper
/// could otherwise write into somebody else's message. A producer that died there costs one cell.
///
/// @tparam Payload  What a cell carries: trivially copyable.
/// @tparam Cells    A power of two.
template <typename Payload, std::size_t Cells>
class Ring {
public:
    /// False when no cell is free. Any thread of any process.
    bool push(const Payload& payload) {
        for (;;) {
            std::uint64_t ticket = 0;
            Cell* cell = claim(&ticket);
            if (cell == nullptr) {
                return false;
            }
            cell->payload = payload;
            std::uint64_t expected = word(ticket, CLAIMED);
            if (cell->state.compare_exchange_strong(expected, word(ticket, PUBLISHED))) {
                return true;
            }
            cell->state.store(word(0, ACKNOWLEDGED));
        }
    }

    /// Takes the oldest message. False when there is none. The consumer alone.
    bool pop(Payload* payload) {
        for (std::size_t step = 0; step < Cells; ++step) {
            const std::uint64_t ticket = m_head.load(std::memory_order_relaxed);
            Cell& cell = m_cells[ticket % Cells];
            std::uint64_t state = cell.state.load(std::memory_order_acquire);
            if (state == free(ticket)) {
                return false;
            }
            if (state == word(ticket, CLAIMED) && !awaitPublished(cell, ticket)) {
                cell.state.compare_exchange_strong(state, word(0, SKIPPED));
            }
            const bool taken =
                cell.state.load(std::memory_order_acquire) == word(ticket, PUBLISHED);
            if (taken) {
                *payload = cell.payload;
                cell.state.store(free(ticket + Cells), std::memory_order_release);
            } else if (cell.state.load() == word(0, ACKNOWLEDGED)) {
                cell.state.store(free(ticket + Cells));
            }
            m_head.store(ticket + 1, std::memory_order_relaxed);
            if (taken) {
                return true;
            }
        }
        return false;
    }

    /// Whether a look with pop is worth it. The consumer alone; one load.
    bool hasWork() const {
        const std::uint64_t ticket = m_head.load(std::memory_order_relaxed);
        return m_cells[ticket % Cells].state.load() != free(ticket);
    }

private:
    enum Status : std::uint64_t { FREE = 0, CLAIMED, PUBLISHED, SKIPPED, ACKNOWLEDGED };
    static constexpr unsigned STATUS_BITS = 3;

    /// A small power of two in size, so that a cell lies in one cache line.
    struct alignas(std::bit_ceil(sizeof(Payload) + 8)) Cell {
        std::atomic<std::uint64_t> state;
        Payload payload;
    };

    static constexpr std::uint64_t word(std::uint64_t ticket, Status status) {
        return ticket << STATUS_BITS | status;
    }
    /// Free for `ticket`: counted in laps, so that the cells of the first lap are free when zero.
    static constexpr std::uint64_t free(std::uint64_t ticket) {
        return word(ticket / Cells * Cells, FREE);
    }

    /// The cell with the lowest free ticket, claimed; null when the ring is full.
    Cell* claim(std::uint64_t* claimed) {
        std::uint64_t ticket = m_tail.load(std::memory_order_relaxed);
        for (std::size_t step = 0; step < 2 * Cells; ++step) {
            Cell& cell = m_cells[ticket % Cells];
            std::uint64_t state = cell.state.load(std::memory_order_acquire);
            if (state == free(ticket) &&
                cell.state.compare_exchange_strong(state, word(ticket, CLAIMED))) {
                raiseTail(ticket + 1);
                *claimed = ticket;
                return &cell;
            }
            const std::uint64_t status = state & ((1U << STATUS_BITS) - 1);
            const bool ofEarlierLap = (state >> STATUS_BITS) < ticket;
            if (ofEarlierLap && (status == CLAIMED || status == PUBLISHED)) {
                return nullptr;
            }
            ++ticket;
            if ((state >> STATUS_BITS) >= ticket) {
                // Stopped since it had read the tail, this thread has been overtaken, perhaps by
                // more laps than it would look at.
                ticket = std::max(ticket, m_tail.load(std::memory_order_relaxed));
            }
        }
        return nullptr;
    }

    void raiseTail(std::uint64_t ticket) {
        std::uint64_t tail = m_tail.load(std::memory_order_relaxed);
        while (tail < ticket && !m_tail.compare_exchange_weak(tail, ticket)) {
        }
    }

    /// A living producer publishes within some tens of nanoseconds.
    static bool awaitPublished(const Cell& cell, std::uint64_t ticket) {
        for (int look = 0; look < 200; ++look) {
            if (cell.state.load(std::memory_order_acquire) == word(ticket, PUBLISHED)) {
                return true;
            }
        }
        return false;
    }

    alignas(64) std::atomic<std::uint64_t> m_head;  ///< Written by the consumer.
    alignas(
        64) std::atomic<std::uint64_t> m_tail;  ///< A hint: every ticket below has been claimed.
    alignas(64) Cell m_cells[Cells];
};

}  // namespace juntora::desktop
