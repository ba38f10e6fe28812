// One of the two hives: keys by number, values, and the order of what is below a key.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>

#include "platform/registry/HiveFile.h"
#include "platform/registry/KeyPath.h"
#include "platform/registry/Patience.h"

namespace juntora::registry {

class Database;

/// A key's number in its hive, never given to another key.
using KeyId = std::int64_t;
inline constexpr KeyId NO_KEY = 0;
inline constexpr KeyId ROOT_KEY = 1;

/// Where a value goes that is read, each as RegQueryValueExA has it.
struct ValueRoom {
    DWORD* type;
    void* data;
    DWORD* size;
};

/// What a call is about to do with the file; a write makes one that is missing.
enum class Intent { READ, CHANGE, WRITE };

enum class Removal { KEY_WITHOUT_SUBKEYS, TREE };

/// Any thread may call any function; calls of several wait for one another. Those that take a key's
/// number return ERROR_KEY_DELETED if it is no longer there, but find(), which then finds nothing.
class Hive {
public:
    explicit Hive(HiveKind kind);
    ~Hive();

    /// The two of this process. They are never destroyed, for threads may outlive main.
    static Hive& user();
    static Hive& machine();

    /// Follows a path as far as it goes: the last key there is, and how many elements lead to it.
    DWORD find(KeyId from, std::span<const std::string> path, KeyId* last, std::size_t* depth);
    DWORD create(KeyId from, std::span<const std::string> path, KeyId* key, bool* isNew);
    DWORD remove(KeyId key, Removal removal);
    /// Success if the file may be written, or be made, in which case it is.
    DWORD prepareWrite();

    DWORD readValue(KeyId key, std::string_view name, const ValueRoom& room);
    DWORD writeValue(KeyId key, std::string_view name, DWORD type, const void* data,
                     std::size_t size);
    DWORD removeValue(KeyId key, std::string_view name);

    /// The first name behind `*name`, or the first of all if that is null, which it is replaced by.
    /// ERROR_NO_MORE_ITEMS behind the last.
    DWORD nextKey(KeyId key, const std::string* behind, std::string* name);
    DWORD nextValue(KeyId key, const std::string* behind, std::string* name);

    /// For a fork, and for the end of the process: between the two no thread is in here, and the
    /// file is closed.
    void closeAndLock();
    void unlock() { m_mutex.unlock(); }

private:
    class ReadScope;

    DWORD open(Intent intent);
    DWORD openFile(Intent intent, Problem* problem);
    DWORD openFor(Intent intent, KeyId key);
    void closeIfStale();
    DWORD errorOf(int result);
    DWORD fail(DWORD error, const Problem& problem);
    DWORD step(KeyId from, std::string_view name, KeyId* key);
    DWORD addKeys(KeyId from, std::span<const std::string> path, KeyId* key, bool* isNew);
    DWORD removeLocked(KeyId key, Removal removal);
    DWORD needKey(KeyId key);
    DWORD next(bool isKey, KeyId key, const std::string* behind, std::string* name);
    template <typename Operation>
    DWORD write(Intent intent, KeyId key, Operation operation);

    const HiveKind m_kind;
    std::mutex m_mutex;
    std::string m_path;
    Patience m_patience;
    std::unique_ptr<Database> m_database;
    bool m_hasComplained = false;
};

/// How often this process has changed anything, in either hive.
std::uint64_t changeCount();

}  // namespace juntora::registry
