#include "platform/registry/OpenKey.h"

#include <utility>

#include "platform/messages.h"

namespace juntora::registry {
namespace {

constexpr REGSAM WRITING = KEY_WRITE & ~KEY_READ;

/// Where a path of the merged view leads in one hive.
struct Way {
    KeyId last = NO_KEY;
    std::size_t depth = 0;
    DWORD error = ERROR_SUCCESS;

    Way(Hive& hive, const KeyPath& path) { error = hive.find(ROOT_KEY, path, &last, &depth); }
    bool hasFailed() const { return error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND; }
};

}  // namespace

DWORD KeySide::locate(KeyId* key) {
    *key = m_key;
    if (*key != NO_KEY) {
        return ERROR_SUCCESS;
    }
    std::size_t depth = 0;
    const DWORD error = m_hive->find(ROOT_KEY, m_path, key, &depth);
    if (error != ERROR_SUCCESS) {
        *key = NO_KEY;
        return error == ERROR_FILE_NOT_FOUND ? ERROR_KEY_DELETED : error;
    }
    m_key = *key;
    return ERROR_SUCCESS;
}

OpenKey::Pointer OpenKey::single(Hive& hive, KeyId key, REGSAM access) {
    Pointer result(new OpenKey);
    result->m_first = std::make_unique<KeySide>(hive, key);
    result->m_access = access;
    return result;
}

OpenKey::Pointer OpenKey::merged(const KeyPath& path, REGSAM access) {
    Pointer result(new OpenKey);
    result->m_first = std::make_unique<KeySide>(Hive::user(), path);
    result->m_second = std::make_unique<KeySide>(Hive::machine(), path);
    result->m_path = path;
    result->m_access = access;
    return result;
}

OpenKey::Pointer OpenKey::root(Hive& hive) { return single(hive, ROOT_KEY, KEY_ALL_ACCESS); }

OpenKey::Pointer OpenKey::classes() { return merged({"Software", "Classes"}, KEY_ALL_ACCESS); }

KeyPath OpenKey::below(const KeyPath& path) const {
    KeyPath whole = m_path;
    whole.insert(whole.end(), path.begin(), path.end());
    return whole;
}

DWORD OpenKey::open(const KeyPath& path, REGSAM access, Pointer* result) {
    if (!isMerged()) {
        Hive& hive = m_first->hive();
        const DWORD denied = (access & WRITING) != 0 ? hive.prepareWrite() : ERROR_SUCCESS;
        KeyId key = NO_KEY;
        std::size_t depth = 0;
        const DWORD error =
            m_first->on([&](Hive&, KeyId from) { return hive.find(from, path, &key, &depth); });
        if (error != ERROR_SUCCESS || denied != ERROR_SUCCESS) {
            return error != ERROR_SUCCESS ? error : denied;
        }
        *result = single(hive, key, access);
        return ERROR_SUCCESS;
    }
    const KeyPath whole = below(path);
    const Way user(Hive::user(), whole);
    const Way machine(Hive::machine(), whole);
    const bool isUsers = user.error == ERROR_SUCCESS;
    // What the user has is to be had even where the machine's file is no good.
    if (user.hasFailed() || (machine.hasFailed() && !isUsers)) {
        return user.hasFailed() ? user.error : machine.error;
    }
    if (!isUsers && machine.error != ERROR_SUCCESS && whole.size() > CLASSES_DEPTH) {
        return machine.error;
    }
    if ((access & WRITING) != 0) {
        if (const DWORD error = (isUsers ? Hive::user() : Hive::machine()).prepareWrite()) {
            return error;
        }
    }
    *result = merged(whole, access);
    return ERROR_SUCCESS;
}

DWORD OpenKey::createMerged(const KeyPath& path, bool* isNew) {
    const Way user(Hive::user(), path);
    const Way machine(Hive::machine(), path);
    for (const Way* way : {&user, &machine}) {
        if (way->hasFailed()) {
            return way->error;
        }
    }
    const bool isUsers = user.depth > CLASSES_DEPTH && user.depth >= machine.depth;
    KeyId key = NO_KEY;
    return (isUsers ? Hive::user() : Hive::machine()).create(ROOT_KEY, path, &key, isNew);
}

DWORD OpenKey::create(const KeyPath& path, REGSAM access, Pointer* result, bool* isNew) {
    *isNew = false;
    const DWORD found = open(path, access, result);
    if (found != ERROR_FILE_NOT_FOUND) {
        return found;
    }
    if (isMerged()) {
        const KeyPath whole = below(path);
        const DWORD error = createMerged(whole, isNew);
        *result = error == ERROR_SUCCESS ? merged(whole, access) : nullptr;
        return error;
    }
    KeyId key = NO_KEY;
    const DWORD error =
        m_first->on([&](Hive& hive, KeyId from) { return hive.create(from, path, &key, isNew); });
    *result = error == ERROR_SUCCESS ? single(m_first->hive(), key, access) : nullptr;
    return error;
}

DWORD OpenKey::remove(const KeyPath& path, Removal removal) {
    if (!isMerged()) {
        return m_first->on([&](Hive& hive, KeyId from) {
            KeyId key = NO_KEY;
            std::size_t depth = 0;
            const DWORD error = hive.find(from, path, &key, &depth);
            return error == ERROR_SUCCESS ? hive.remove(key, removal) : error;
        });
    }
    const KeyPath whole = below(path);
    for (Hive* hive : {&Hive::user(), &Hive::machine()}) {
        const Way way(*hive, whole);
        if (way.error != ERROR_FILE_NOT_FOUND) {
            return way.hasFailed() ? way.error : hive->remove(way.last, removal);
        }
    }
    return ERROR_FILE_NOT_FOUND;
}

/// Runs operation(Hive&, KeyId) on the first side that has the key and what is asked for in it.
template <typename Operation>
DWORD OpenKey::onFirst(Operation operation) {
    const DWORD first = m_first->on(operation);
    if (!isMerged() || (first != ERROR_KEY_DELETED && first != ERROR_FILE_NOT_FOUND)) {
        return first;
    }
    const DWORD second = m_second->on(operation);
    if (second != ERROR_KEY_DELETED) {
        return second;
    }
    return isAlwaysThere() ? ERROR_FILE_NOT_FOUND : first;
}

DWORD OpenKey::readValue(std::string_view name, const ValueRoom& room) {
    return onFirst([&](Hive& hive, KeyId key) { return hive.readValue(key, name, room); });
}

DWORD OpenKey::removeValue(std::string_view name) {
    return onFirst([&](Hive& hive, KeyId key) { return hive.removeValue(key, name); });
}

DWORD OpenKey::writeValue(std::string_view name, DWORD type, const void* data, std::size_t size) {
    const auto write = [&](Hive& hive, KeyId key) {
        return hive.writeValue(key, name, type, data, size);
    };
    const DWORD error = onFirst(write);
    if (error != ERROR_FILE_NOT_FOUND || !isAlwaysThere()) {
        return error;
    }
    KeyId key = NO_KEY;
    bool isNew = false;
    const DWORD made = m_second->hive().create(ROOT_KEY, m_path, &key, &isNew);
    return made == ERROR_SUCCESS ? m_second->on(write) : made;
}

DWORD OpenKey::next(Listing listing, const std::string* behind, std::string* name) {
    bool isFound = false;
    DWORD end = isAlwaysThere() ? ERROR_NO_MORE_ITEMS : ERROR_KEY_DELETED;
    for (KeySide* side : {m_first.get(), m_second.get()}) {
        if (side == nullptr) {
            continue;
        }
        std::string candidate;
        const DWORD error = side->on([&](Hive& hive, KeyId key) {
            return listing == Listing::KEYS ? hive.nextKey(key, behind, &candidate)
                                            : hive.nextValue(key, behind, &candidate);
        });
        if (error == ERROR_SUCCESS) {
            if (!isFound || isBefore(candidate, *name)) {
                *name = candidate;
            }
            isFound = true;
        } else if (error == ERROR_NO_MORE_ITEMS) {
            end = error;
        } else if (error != ERROR_KEY_DELETED) {
            return error;
        }
    }
    return isFound ? ERROR_SUCCESS : end;
}

DWORD OpenKey::readName(Listing listing, DWORD index, Cursor* cursor, std::string* name) {
    if (cursor->changes != changeCount() || cursor->passed > index + 1) {
        *cursor = {changeCount(), 0, {}, {}};
    } else if (cursor->passed == index + 1) {
        // Asked once more, as one does who had too little room.
        --cursor->passed;
        cursor->last = cursor->lastButOne;
    }
    for (;;) {
        const DWORD error = next(listing, cursor->passed == 0 ? nullptr : &cursor->last, name);
        if (error != ERROR_SUCCESS) {
            return error;
        }
        ++cursor->passed;
        cursor->lastButOne = std::exchange(cursor->last, *name);
        if (cursor->passed == index + 1) {
            return ERROR_SUCCESS;
        }
    }
}

}  // namespace juntora::registry
