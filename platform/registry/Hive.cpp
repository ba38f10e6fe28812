#include "platform/registry/Hive.h"

#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>

#include "platform/kernel/errorOutput.h"
#include "platform/kernel/printable.h"
#include "platform/messages.h"
#include "platform/registry/Database.h"

namespace juntora::registry {
namespace {

std::atomic<std::uint64_t> g_changeCount{0};

struct Hives {
    Hive user{HiveKind::USER};
    Hive machine{HiveKind::MACHINE};
};

Hives& hives();

void closeAndLockBoth() {
    hives().user.closeAndLock();
    hives().machine.closeAndLock();
}

void unlockBoth() {
    hives().machine.unlock();
    hives().user.unlock();
}

/// The last to close a file also puts its parts together into one.
void closeBoth() {
    closeAndLockBoth();
    unlockBoth();
}

Hives& hives() {
    static Hives* const both = [] {
        // SQLite's notion of the locks that it holds would be wrong in a child of a fork.
        pthread_atfork(closeAndLockBoth, unlockBoth, unlockBoth);
        std::atexit(closeBoth);
        return std::make_unique<Hives>().release();
    }();
    return *both;
}

}  // namespace

std::uint64_t changeCount() { return g_changeCount.load(std::memory_order_acquire); }

Hive::Hive(HiveKind kind) : m_kind(kind) {}
Hive::~Hive() = default;

Hive& Hive::user() { return hives().user; }
Hive& Hive::machine() { return hives().machine; }

void Hive::closeAndLock() {
    m_mutex.lock();
    m_database.reset();
}

DWORD Hive::fail(DWORD error, const Problem& problem) {
    if (!problem.empty() && !m_hasComplained) {
        m_hasComplained = true;
        const char* whose = m_kind == HiveKind::USER ? "user" : "machine";
        kernel::WriteToErrors(
            PrintableText(std::string("juntora: the ") + whose + "'s registry: " + problem) + "\n");
    }
    return error;
}

DWORD Hive::errorOf(int result) {
    Problem problem;
    const DWORD error = Database::errorOf(result, m_path, &problem);
    return fail(error, problem);
}

DWORD Hive::openFile(Intent intent, Problem* problem) {
    if (const DWORD error = locateHive(m_kind, &m_path, problem)) {
        return error;
    }
    FileIdentity identity;
    DWORD error = checkHiveFile(m_kind, m_path, &identity, problem);
    if (error == ERROR_FILE_NOT_FOUND && intent == Intent::WRITE) {
        error = makeHiveFolder(m_kind, m_path, problem);
        error =
            error == ERROR_SUCCESS ? Database::make(m_kind, m_path, &m_patience, problem) : error;
        error = error == ERROR_SUCCESS ? checkHiveFile(m_kind, m_path, &identity, problem) : error;
    }
    return error == ERROR_SUCCESS
               ? Database::open(m_path, identity, &m_patience, &m_database, problem)
               : error;
}

/// Before a write, which would go to a file that nobody else sees any more.
void Hive::closeIfStale() {
    FileIdentity identity;
    Problem ignored;
    if (m_database != nullptr &&
        (m_database->isReadOnly() ||
         checkHiveFile(m_kind, m_path, &identity, &ignored) != ERROR_SUCCESS ||
         identity != m_database->identity())) {
        m_database.reset();
    }
}

DWORD Hive::open(Intent intent) {
    if (intent != Intent::READ) {
        closeIfStale();
    }
    if (m_database == nullptr) {
        Problem problem;
        if (const DWORD error = openFile(intent, &problem)) {
            return fail(error, problem);
        }
    }
    return intent != Intent::READ && m_database->isReadOnly() ? ERROR_ACCESS_DENIED : ERROR_SUCCESS;
}

/// As open(), for a call about a key: with the file all keys are gone but the root.
DWORD Hive::openFor(Intent intent, KeyId key) {
    const DWORD error = open(intent);
    return error == ERROR_FILE_NOT_FOUND && key != ROOT_KEY ? ERROR_KEY_DELETED : error;
}

DWORD Hive::prepareWrite() {
    const std::lock_guard lock(m_mutex);
    return open(Intent::WRITE);
}

/// Runs `operation` as one transaction, of which nothing stays if it fails.
template <typename Operation>
DWORD Hive::write(Intent intent, KeyId key, Operation operation) {
    const std::lock_guard lock(m_mutex);
    if (const DWORD error = openFor(intent, key)) {
        return error;
    }
    if (const int begun = m_database->run(Query::BEGIN).step(); begun != SQLITE_DONE) {
        return errorOf(begun);
    }
    DWORD error = operation();
    if (error == ERROR_SUCCESS) {
        error = errorOf(m_database->run(Query::COMMIT).step());
    }
    if (error == ERROR_SUCCESS) {
        g_changeCount.fetch_add(1, std::memory_order_release);
    } else {
        m_database->run(Query::ROLLBACK).step();
    }
    return error;
}

DWORD Hive::step(KeyId from, std::string_view name, KeyId* key) {
    Run run = m_database->run(Query::FIND_KEY);
    const int result = run.bind(1, from).bind(2, name).step();
    if (result != SQLITE_ROW) {
        return result == SQLITE_DONE ? ERROR_FILE_NOT_FOUND : errorOf(result);
    }
    *key = run.number(0);
    return ERROR_SUCCESS;
}

/// One look at the file for several steps: they see the same state, and lock it once.
class Hive::ReadScope {
public:
    explicit ReadScope(Database& database) : m_database(database) {
        m_database.run(Query::BEGIN_READ).step();
    }
    ~ReadScope() { m_database.run(Query::COMMIT).step(); }
    ReadScope(const ReadScope&) = delete;
    ReadScope& operator=(const ReadScope&) = delete;

private:
    Database& m_database;
};

DWORD Hive::needKey(KeyId key) {
    const int result = m_database->run(Query::HAS_KEY).bind(1, key).step();
    return result == SQLITE_DONE ? ERROR_KEY_DELETED : errorOf(result);
}

DWORD Hive::find(KeyId from, std::span<const std::string> path, KeyId* last, std::size_t* depth) {
    const std::lock_guard lock(m_mutex);
    *last = from;
    *depth = 0;
    if (!path.empty()) {
        closeIfStale();  // Somebody may have put another file in its place.
    }
    if (const DWORD error = openFor(Intent::READ, from)) {
        return error == ERROR_FILE_NOT_FOUND && path.empty() ? ERROR_SUCCESS : error;
    }
    const ReadScope whole(*m_database);
    DWORD error = path.empty() ? needKey(from) : ERROR_SUCCESS;
    while (error == ERROR_SUCCESS && *depth < path.size()) {
        error = step(*last, path[*depth], last);
        *depth += error == ERROR_SUCCESS ? 1 : 0;
    }
    if (error == ERROR_FILE_NOT_FOUND && *depth == 0 && needKey(from) == ERROR_KEY_DELETED) {
        return ERROR_KEY_DELETED;
    }
    return error;
}

DWORD Hive::addKeys(KeyId from, std::span<const std::string> path, KeyId* key, bool* isNew) {
    *key = from;
    *isNew = false;
    if (const DWORD error = needKey(from)) {
        return error;
    }
    for (const std::string& name : path) {
        const KeyId parent = *key;
        const DWORD error = *isNew ? ERROR_FILE_NOT_FOUND : step(parent, name, key);
        if (error == ERROR_FILE_NOT_FOUND) {
            *isNew = true;
            Run run = m_database->run(Query::ADD_KEY);
            if (const int result = run.bind(1, parent).bind(2, name).step(); result != SQLITE_ROW) {
                return errorOf(result);
            }
            *key = run.number(0);
        } else if (error != ERROR_SUCCESS) {
            return error;
        }
    }
    return ERROR_SUCCESS;
}

DWORD Hive::create(KeyId from, std::span<const std::string> path, KeyId* key, bool* isNew) {
    return write(Intent::WRITE, from, [&] { return addKeys(from, path, key, isNew); });
}

DWORD Hive::removeLocked(KeyId key, Removal removal) {
    if (const DWORD error = needKey(key)) {
        return error;
    }
    const bool isTree = removal == Removal::TREE;
    if (!isTree) {
        const int result = m_database->run(Query::HAS_SUBKEY).bind(1, key).step();
        if (result != SQLITE_DONE) {
            return result == SQLITE_ROW ? ERROR_ACCESS_DENIED : errorOf(result);
        }
    }
    for (const Query query : {isTree ? Query::REMOVE_TREE_VALUES : Query::REMOVE_VALUES,
                              isTree ? Query::REMOVE_TREE : Query::REMOVE_KEY}) {
        if (const int result = m_database->run(query).bind(1, key).step(); result != SQLITE_DONE) {
            return errorOf(result);
        }
    }
    return ERROR_SUCCESS;
}

DWORD Hive::remove(KeyId key, Removal removal) {
    return write(Intent::CHANGE, key, [&] { return removeLocked(key, removal); });
}

DWORD Hive::readValue(KeyId key, std::string_view name, const ValueRoom& room) {
    const std::lock_guard lock(m_mutex);
    if (const DWORD error = openFor(Intent::READ, key)) {
        return error;
    }
    Run run = m_database->run(Query::READ_VALUE);
    const int result = run.bind(1, key).bind(2, name).step();
    if (result != SQLITE_ROW) {
        const DWORD error = result == SQLITE_DONE ? needKey(key) : errorOf(result);
        return error == ERROR_SUCCESS ? ERROR_FILE_NOT_FOUND : error;
    }
    if (room.type != nullptr) {
        *room.type = static_cast<DWORD>(run.number(0));
    }
    const std::string_view data = run.blob(1);
    const DWORD capacity = room.size == nullptr ? 0 : *room.size;
    if (room.size != nullptr) {
        *room.size = static_cast<DWORD>(data.size());
    }
    if (room.data != nullptr) {
        if (data.size() > capacity) {
            return ERROR_MORE_DATA;
        }
        std::copy(data.begin(), data.end(), static_cast<char*>(room.data));
    }
    return ERROR_SUCCESS;
}

DWORD Hive::writeValue(KeyId key, std::string_view name, DWORD type, const void* data,
                       std::size_t size) {
    return write(Intent::WRITE, key, [&] {
        if (const DWORD error = needKey(key)) {
            return error;
        }
        Run run = m_database->run(Query::WRITE_VALUE);
        run.bind(1, key).bind(2, name).bind(3, std::int64_t{type}).bind(4, data, size);
        return errorOf(run.step());
    });
}

DWORD Hive::removeValue(KeyId key, std::string_view name) {
    return write(Intent::CHANGE, key, [&] {
        const int result = m_database->run(Query::REMOVE_VALUE).bind(1, key).bind(2, name).step();
        if (result != SQLITE_DONE) {
            return errorOf(result);
        }
        const DWORD error = needKey(key);
        return error == ERROR_SUCCESS ? ERROR_FILE_NOT_FOUND : error;
    });
}

DWORD Hive::next(bool isKey, KeyId key, const std::string* behind, std::string* name) {
    const std::lock_guard lock(m_mutex);
    if (const DWORD error = openFor(Intent::READ, key)) {
        return error == ERROR_FILE_NOT_FOUND ? ERROR_NO_MORE_ITEMS : error;
    }
    const Query first = isKey ? Query::FIRST_KEY : Query::FIRST_VALUE;
    const Query following = isKey ? Query::NEXT_KEY : Query::NEXT_VALUE;
    Run run = m_database->run(behind == nullptr ? first : following);
    run.bind(1, key);
    if (behind != nullptr) {
        run.bind(2, *behind);
    }
    const int result = run.step();
    if (result == SQLITE_ROW) {
        *name = run.text(0);
        return ERROR_SUCCESS;
    }
    const DWORD error = result == SQLITE_DONE ? needKey(key) : errorOf(result);
    return error == ERROR_SUCCESS ? ERROR_NO_MORE_ITEMS : error;
}

DWORD Hive::nextKey(KeyId key, const std::string* behind, std::string* name) {
    return next(true, key, behind, name);
}

DWORD Hive::nextValue(KeyId key, const std::string* behind, std::string* name) {
    return next(false, key, behind, name);
}

}  // namespace juntora::registry
