#include "platform/registry/KeyHandles.h"

#include <pthread.h>

#include <array>
#include <cstdint>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/messages.h"

namespace juntora::registry {
namespace {

constexpr std::uintptr_t FIRST_PREDEFINED = 0x80000000;
constexpr std::size_t PREDEFINED_COUNT = 3;
constexpr int GENERATION_SHIFT = 32;

struct Entry {
    OpenKey::Pointer key;
    std::uint32_t generation = 1;
};

/// A handle is an entry's index below its generation, which is never 0, so that no handle is null
/// or a predefined one, and an old handle never means a new key.
struct Table {
    // No shared one: that knows its owner by the thread's number, which a forked child's is not.
    std::mutex mutex;
    std::vector<Entry> entries;
    std::vector<std::size_t> free;
    std::array<OpenKey::Pointer, PREDEFINED_COUNT> own{
        OpenKey::classes(), OpenKey::root(Hive::user()), OpenKey::root(Hive::machine())};
    std::array<OpenKey::Pointer, PREDEFINED_COUNT> overriding{};
};

/// Never destroyed: threads may outlive main.
Table& table() {
    static Table* const handles = [] {
        pthread_atfork([] { table().mutex.lock(); }, [] { table().mutex.unlock(); },
                       [] { table().mutex.unlock(); });
        return std::make_unique<Table>().release();
    }();
    return *handles;
}

/// The index of a predefined key, PREDEFINED_COUNT for any other.
std::size_t predefinedIndex(HKEY handle) {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    const bool isOne = value >= FIRST_PREDEFINED && value < FIRST_PREDEFINED + PREDEFINED_COUNT;
    return isOne ? value - FIRST_PREDEFINED : PREDEFINED_COUNT;
}

Entry* entryOf(Table& handles, HKEY handle) {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    const std::size_t index = value & 0xFFFFFFFF;
    if (index >= handles.entries.size()) {
        return nullptr;
    }
    Entry& entry = handles.entries[index];
    const bool isOpen = entry.key != nullptr && entry.generation == value >> GENERATION_SHIFT;
    return isOpen ? &entry : nullptr;
}

}  // namespace

OpenKey::Pointer keyOf(HKEY handle) {
    Table& handles = table();
    const std::lock_guard lock(handles.mutex);
    const std::size_t predefined = predefinedIndex(handle);
    if (predefined < PREDEFINED_COUNT) {
        const OpenKey::Pointer& overriding = handles.overriding[predefined];
        return overriding != nullptr ? overriding : handles.own[predefined];
    }
    const Entry* entry = entryOf(handles, handle);
    return entry == nullptr ? nullptr : entry->key;
}

HKEY addHandle(OpenKey::Pointer key) {
    Table& handles = table();
    const std::lock_guard lock(handles.mutex);
    std::size_t index = handles.entries.size();
    if (handles.free.empty()) {
        handles.entries.emplace_back();
    } else {
        index = handles.free.back();
        handles.free.pop_back();
    }
    Entry& entry = handles.entries[index];
    entry.key = std::move(key);
    return reinterpret_cast<HKEY>(std::uintptr_t{entry.generation} << GENERATION_SHIFT | index);
}

DWORD closeHandle(HKEY handle) {
    if (predefinedIndex(handle) < PREDEFINED_COUNT) {
        return ERROR_SUCCESS;
    }
    Table& handles = table();
    const std::lock_guard lock(handles.mutex);
    Entry* entry = entryOf(handles, handle);
    if (entry == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    entry->key.reset();
    if (++entry->generation != 0) {  // One that has come round is not used again.
        handles.free.push_back(static_cast<std::size_t>(entry - handles.entries.data()));
    }
    return ERROR_SUCCESS;
}

DWORD overridePredefined(HKEY predefined, OpenKey::Pointer key) {
    const std::size_t index = predefinedIndex(predefined);
    if (index == PREDEFINED_COUNT) {
        return ERROR_INVALID_HANDLE;
    }
    Table& handles = table();
    const std::lock_guard lock(handles.mutex);
    handles.overriding[index] = std::move(key);
    return ERROR_SUCCESS;
}

Cursor cursorOf(const OpenKey& key, Listing listing) {
    const std::lock_guard lock(table().mutex);
    return key.cursors[static_cast<std::size_t>(listing)];
}

void keepCursor(OpenKey& key, Listing listing, Cursor cursor) {
    const std::lock_guard lock(table().mutex);
    key.cursors[static_cast<std::size_t>(listing)] = std::move(cursor);
}

}  // namespace juntora::registry
