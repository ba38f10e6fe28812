// What a handle stands for: a key of one hive, or of the two laid over each other.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "platform/registry/Hive.h"
#include "platform/registry/registry.h"

namespace juntora::registry {

/// A key as one hive has it. One that stands for a path is found anew by it when it comes into
/// being, is deleted or comes back; any other is what it was, or ERROR_KEY_DELETED.
class KeySide {
public:
    KeySide(Hive& hive, KeyId key) : m_hive(&hive), m_key(key) {}
    KeySide(Hive& hive, KeyPath path) : m_hive(&hive), m_path(std::move(path)) {}

    Hive& hive() const { return *m_hive; }

    /// Runs operation(Hive&, KeyId); ERROR_KEY_DELETED where the key is not there.
    template <typename Operation>
    DWORD on(Operation operation) {
        KeyId key = NO_KEY;
        DWORD error = locate(&key);
        if (error == ERROR_SUCCESS) {
            error = operation(*m_hive, key);
        }
        if (error == ERROR_KEY_DELETED && key != NO_KEY && !m_path.empty()) {
            m_key = NO_KEY;
            error = locate(&key);
            error = error == ERROR_SUCCESS ? operation(*m_hive, key) : error;
        }
        return error;
    }

private:
    DWORD locate(KeyId* key);

    Hive* m_hive;
    KeyPath m_path;
    std::atomic<KeyId> m_key{NO_KEY};
};

/// Access for the calls that name none: writes that the hive does not allow fail one by one.
inline constexpr REGSAM WHAT_CAN_BE_HAD = 0x02000000;

enum class Listing { KEYS, VALUES };

/// How far a caller has come who asks for one name after the other. Good until this process changes
/// anything; names that others add or delete behind it cost nobody a name.
struct Cursor {
    std::uint64_t changes = 0;
    DWORD passed = 0;  ///< How many names.
    std::string last;
    std::string lastButOne;
};

/// Any thread may call any function. Cursors are kept for the table of handles, under its lock.
class OpenKey {
public:
    using Pointer = std::shared_ptr<OpenKey>;

    static Pointer root(Hive& hive);
    /// HKEY_CLASSES_ROOT.
    static Pointer classes();

    DWORD open(const KeyPath& path, REGSAM access, Pointer* result);
    DWORD create(const KeyPath& path, REGSAM access, Pointer* result, bool* isNew);
    DWORD remove(const KeyPath& path, Removal removal);

    DWORD readValue(std::string_view name, const ValueRoom& room);
    DWORD writeValue(std::string_view name, DWORD type, const void* data, std::size_t size);
    DWORD removeValue(std::string_view name);
    /// Reads name number `index`, from the cursor on if it is good, and moves it.
    DWORD readName(Listing listing, DWORD index, Cursor* cursor, std::string* name);

    bool allows(REGSAM access) const {
        return (m_access & access) == access || m_access == WHAT_CAN_BE_HAD;
    }

    Cursor cursors[2];

private:
    OpenKey() = default;
    static Pointer single(Hive& hive, KeyId key, REGSAM access);
    static Pointer merged(const KeyPath& path, REGSAM access);

    bool isMerged() const { return m_second != nullptr; }
    /// The classes root is there even where neither hive has it.
    bool isAlwaysThere() const { return isMerged() && m_path.size() == CLASSES_DEPTH; }
    KeyPath below(const KeyPath& path) const;
    template <typename Operation>
    DWORD onFirst(Operation operation);
    DWORD next(Listing listing, const std::string* behind, std::string* name);
    DWORD createMerged(const KeyPath& path, bool* isNew);

    static constexpr std::size_t CLASSES_DEPTH = 2;

    std::unique_ptr<KeySide> m_first;   ///< The only one, or the user's.
    std::unique_ptr<KeySide> m_second;  ///< The machine's.
    KeyPath m_path;                     ///< From the root of both hives.
    REGSAM m_access = KEY_ALL_ACCESS;
};

}  // namespace juntora::registry
