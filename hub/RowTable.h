// Finds the rows of a table that have something in common without a walk through it.
#pragma once

#include <cstddef>
#include <vector>

#include "hub/AppEntry.h"

namespace juntora {

/// Rows by one of their keys; those with the same one are chained, the newest first. One flat array
/// of hashes and rows, at most half full: a look-up among ten thousand rows touches one line of it
/// and the row. Stands beside the table's list and is kept in step with it by AppTable alone.
///
/// `Key` has `using Value`, what is looked up by, and, all static, `RowKey KEY`, `Value of(row)`,
/// `std::size_t hash(value)` and `bool HASH_TELLS_ALL`: different values have different hashes. If
/// not, it has `bool equal(value, value)` as well.
template <typename Key>
class RowTable {
public:
    using Value = typename Key::Value;

    /// The newest row with a key; null if there is none.
    AppEntry* newest(const Value& key) const {
        return m_slots.empty() ? nullptr : m_slots[slotOf(key)].newest;
    }
    /// The next older row with the same key; null behind the oldest.
    static AppEntry* older(const AppEntry& row) { return neighbours(row).older; }

    /// Makes room for one more row: the only step that can fail.
    void reserveOne() {
        if (2 * (m_used + 1) > m_slots.size()) {
            grow();
        }
    }
    /// Enters a row for which room was made, at the place that its age gives it.
    void add(AppEntry* row) {
        const Value key = Key::of(*row);
        Slot& slot = m_slots[slotOf(key)];
        if (!slot.newest) {
            slot.hash = mixed(key);
            ++m_used;
        }
        AppEntry* newer = nullptr;
        AppEntry* older = slot.newest;
        while (older && older->place.age > row->place.age) {
            newer = older;
            older = neighbours(*older).older;
        }
        neighbours(*row) = {newer, older};
        (newer ? neighbours(*newer).older : slot.newest) = row;
        if (older) {
            neighbours(*older).newer = row;
        }
    }
    /// Forgets a row, which must still have the key that it was entered by.
    void remove(AppEntry* row) {
        const auto [newer, older] = neighbours(*row);
        neighbours(*row) = {};
        if (older) {
            neighbours(*older).newer = newer;
        }
        if (newer) {
            neighbours(*newer).older = older;
            return;
        }
        const std::size_t at = slotOf(Key::of(*row));
        m_slots[at].newest = older;
        if (!older) {
            --m_used;
            closeGap(at);
        }
    }

private:
    struct Slot {
        std::size_t hash = 0;
        AppEntry* newest = nullptr;  ///< Null: the slot is free.
    };
    static constexpr std::size_t FIRST_SLOTS = 64;

    static auto& neighbours(auto& row) { return row.place.neighbours[static_cast<int>(Key::KEY)]; }

    /// Spreads hashes that differ in a few bits alone, as handles do; different ones stay
    /// different.
    static std::size_t mixed(const Value& key) {
        std::size_t hash = Key::hash(key);
        hash *= 0x9E3779B97F4A7C15;
        return hash ^ (hash >> 32);
    }

    std::size_t next(std::size_t at) const { return (at + 1) & (m_slots.size() - 1); }
    std::size_t home(const Slot& slot) const { return slot.hash & (m_slots.size() - 1); }

    /// The slot of a key, or the free one where it would come to stand.
    std::size_t slotOf(const Value& key) const {
        const Slot wanted{mixed(key)};
        std::size_t at = home(wanted);
        while (m_slots[at].newest &&
               !(m_slots[at].hash == wanted.hash && hasKey(m_slots[at], key))) {
            at = next(at);
        }
        return at;
    }
    /// For a slot with the key's hash. The row is not looked at where that tells all.
    static bool hasKey(const Slot& slot, const Value& key) {
        if constexpr (Key::HASH_TELLS_ALL) {
            return true;
        } else {
            return Key::equal(Key::of(*slot.newest), key);
        }
    }

    void grow() {
        std::vector<Slot> larger(m_slots.empty() ? FIRST_SLOTS : 2 * m_slots.size());
        m_slots.swap(larger);
        for (const Slot& slot : larger) {
            if (slot.newest) {
                std::size_t at = home(slot);
                while (m_slots[at].newest) {
                    at = next(at);
                }
                m_slots[at] = slot;
            }
        }
    }

    /// Moves up what a look-up would no longer reach across a slot that has become free.
    void closeGap(std::size_t gap) {
        const std::size_t last = m_slots.size() - 1;
        for (std::size_t at = next(gap); m_slots[at].newest; at = next(at)) {
            const std::size_t wayFromHome = (at - home(m_slots[at])) & last;
            if (wayFromHome >= ((at - gap) & last)) {
                m_slots[gap] = m_slots[at];
                m_slots[at].newest = nullptr;
                gap = at;
            }
        }
    }

    std::vector<Slot> m_slots;
    std::size_t m_used = 0;
};

}  // namespace juntora
