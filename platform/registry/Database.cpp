#include "platform/registry/Database.h"

#include <cerrno>
#include <cstring>
#include <string>

#include "platform/messages.h"

namespace juntora::registry {
namespace {

// "JunR" and the layout's number. Whoever changes the tables changes the number; see make().
constexpr int APPLICATION_ID = 0x4A756E52;
constexpr int LAYOUT_VERSION = 1;

// Key numbers are never used again, so that a handle to a deleted key never comes to mean another:
// not in this file (AUTOINCREMENT), nor in one that takes its place (they begin anywhere).
// NOCASE folds A to Z and nothing else.
constexpr char TABLES[] = R"(
    CREATE TABLE key(
        id INTEGER PRIMARY KEY AUTOINCREMENT,
        parent INTEGER NOT NULL,
        name TEXT NOT NULL COLLATE NOCASE,
        UNIQUE(parent, name));
    CREATE TABLE value(
        key INTEGER NOT NULL,
        name TEXT NOT NULL COLLATE NOCASE,
        type INTEGER NOT NULL,
        data BLOB NOT NULL,
        PRIMARY KEY(key, name)) WITHOUT ROWID;
    INSERT INTO key(id, parent, name) VALUES (1, 0, ''), (2, 1, 'Software'), (3, 2, 'Classes');
    UPDATE sqlite_sequence SET seq = abs(random() >> 8);
)";

#define TREE                                            \
    "WITH RECURSIVE tree(id) AS (VALUES(?1) UNION ALL " \
    "SELECT key.id FROM key JOIN tree ON key.parent = tree.id) "

constexpr const char* QUERIES[] = {
    // Immediately: a read that turns into a write fails at once when another program has written
    // in between, however long it would be ready to wait.
    "BEGIN IMMEDIATE",
    "BEGIN",
    "COMMIT",
    "ROLLBACK",
    "SELECT id FROM key WHERE parent = ?1 AND name = ?2",
    "SELECT 1 FROM key WHERE id = ?1",
    "SELECT 1 FROM key WHERE parent = ?1",
    "INSERT INTO key(parent, name) VALUES (?1, ?2) RETURNING id",
    "DELETE FROM key WHERE id = ?1",
    "DELETE FROM value WHERE key = ?1",
    (TREE "DELETE FROM key WHERE id IN (SELECT id FROM tree)"),
    (TREE "DELETE FROM value WHERE key IN (SELECT id FROM tree)"),
    "SELECT name FROM key WHERE parent = ?1 ORDER BY name LIMIT 1",
    "SELECT name FROM key WHERE parent = ?1 AND name > ?2 ORDER BY name LIMIT 1",
    "SELECT type, data FROM value WHERE key = ?1 AND name = ?2",
    ("INSERT INTO value(key, name, type, data) VALUES (?1, ?2, ?3, ?4) "
     "ON CONFLICT DO UPDATE SET type = excluded.type, data = excluded.data"),
    "DELETE FROM value WHERE key = ?1 AND name = ?2 RETURNING 1",
    "SELECT name FROM value WHERE key = ?1 ORDER BY name LIMIT 1",
    "SELECT name FROM value WHERE key = ?1 AND name > ?2 ORDER BY name LIMIT 1",
};
#undef TREE
static_assert(std::size(QUERIES) == static_cast<std::size_t>(Query::COUNT));

/// The name by which SQLite takes a file for one that nobody changes.
std::string immutableName(const std::string& path) {
    std::string name = "file:";
    for (const char c : path) {
        if (c == '%' || c == '?' || c == '#') {
            constexpr char DIGITS[] = "0123456789ABCDEF";
            name += {'%', DIGITS[c >> 4], DIGITS[c & 15]};
        } else {
            name += c;
        }
    }
    return name + "?immutable=1";
}

std::string moveAway(const std::string& path) {
    return "; move it away, or put a copy that is good in its place: without it an empty registry "
           "is made at the next write. It has not been touched: " +
           path;
}

}  // namespace

int Database::connect(const std::string& name, int flags, Patience* patience,
                      Connection* connection) {
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(name.c_str(), &opened, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    connection->reset(opened);
    if (result == SQLITE_OK) {
        sqlite3_busy_handler(
            opened,
            [](void* ofHive, int tries) {
                return static_cast<Patience*>(ofHive)->wait(tries) ? 1 : 0;
            },
            patience);
    }
    return result;
}

int Database::checkVersion(bool* isOurs) {
    const std::pair<const char*, int> wanted[] = {{"PRAGMA application_id", APPLICATION_ID},
                                                  {"PRAGMA user_version", LAYOUT_VERSION}};
    *isOurs = true;
    for (const auto& [pragma, value] : wanted) {
        sqlite3_stmt* statement = nullptr;
        int result = sqlite3_prepare_v2(m_connection.get(), pragma, -1, &statement, nullptr);
        const std::unique_ptr<sqlite3_stmt, Closer> keeper(statement);
        result = result == SQLITE_OK ? sqlite3_step(statement) : result;
        if (result != SQLITE_ROW) {
            return result;
        }
        *isOurs = *isOurs && sqlite3_column_int(statement, 0) == value;
    }
    return SQLITE_OK;
}

DWORD Database::open(const std::string& path, const FileIdentity& identity, Patience* patience,
                     std::unique_ptr<Database>* result, Problem* problem) {
    auto database = std::make_unique<Database>();
    database->m_identity = identity;
    bool isOurs = false;
    int state = connect(path, SQLITE_OPEN_READWRITE, patience, &database->m_connection);
    state = state == SQLITE_OK ? database->checkVersion(&isOurs) : state;
    if ((state == SQLITE_CANTOPEN || state == SQLITE_READONLY) && isInReadOnlyFolder(path)) {
        // A file in WAL mode needs another beside it, unless it is read as one that never changes.
        state = connect(immutableName(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, patience,
                        &database->m_connection);
        state = state == SQLITE_OK ? database->checkVersion(&isOurs) : state;
    }
    if (state != SQLITE_OK) {
        return errorOf(state, path, problem);
    }
    if (!isOurs) {
        *problem = "this is no registry, or one of another version of Juntora" + moveAway(path);
        return ERROR_NOT_REGISTRY_FILE;
    }
    sqlite3_exec(database->m_connection.get(), "PRAGMA synchronous = NORMAL", nullptr, nullptr,
                 nullptr);
    *result = std::move(database);
    return ERROR_SUCCESS;
}

DWORD Database::make(HiveKind kind, const std::string& path, Patience* patience, Problem* problem) {
    const DraftFile draft(kind, path);
    if (draft.path().empty()) {
        const bool isDenied = errno == EACCES || errno == EROFS || errno == EPERM;
        *problem = isDenied ? "" : "cannot make " + path + ": " + std::strerror(errno);
        return isDenied ? ERROR_ACCESS_DENIED : ERROR_REGISTRY_IO_FAILED;
    }
    Connection connection;
    int state = connect(draft.path(), SQLITE_OPEN_READWRITE, patience, &connection);
    const std::string numbers = "PRAGMA application_id = " + std::to_string(APPLICATION_ID) +
                                "; PRAGMA user_version = " + std::to_string(LAYOUT_VERSION);
    // Who may only read the machine's file could not open it in WAL mode.
    const char* mode = kind == HiveKind::USER ? "PRAGMA journal_mode = WAL" : "";
    for (const char* text : {mode, TABLES, numbers.c_str()}) {
        state = state == SQLITE_OK ? sqlite3_exec(connection.get(), text, nullptr, nullptr, nullptr)
                                   : state;
    }
    connection.reset();
    if (state != SQLITE_OK) {
        return errorOf(state, path, problem);
    }
    if (!draft.publish(path)) {
        *problem = "cannot make " + path + ": " + std::strerror(errno);
        return ERROR_REGISTRY_IO_FAILED;
    }
    return ERROR_SUCCESS;
}

Run Database::run(Query query) {
    const auto at = static_cast<std::size_t>(query);
    int prepared = SQLITE_OK;
    if (m_statements[at] == nullptr) {
        sqlite3_stmt* statement = nullptr;
        prepared = sqlite3_prepare_v3(m_connection.get(), QUERIES[at], -1,
                                      SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
        m_statements[at].reset(statement);
    }
    return Run(m_statements[at].get(), prepared);
}

DWORD Database::errorOf(int result, const std::string& path, Problem* problem) {
    switch (result & 0xFF) {
        case SQLITE_OK:
        case SQLITE_ROW:
        case SQLITE_DONE:
            return ERROR_SUCCESS;
        case SQLITE_READONLY:
        case SQLITE_PERM:
        case SQLITE_AUTH:
            return ERROR_ACCESS_DENIED;
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            *problem =
                "another program keeps it locked; end that program (fuser tells which): " + path;
            return ERROR_LOCK_FAILED;
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
        case SQLITE_ERROR:  // Our tables are not in it.
            *problem = "its file is damaged" + moveAway(path);
            return ERROR_BADDB;
        case SQLITE_NOMEM:
            return ERROR_NOT_ENOUGH_MEMORY;
        case SQLITE_FULL:
            *problem = "there is no room left for " + path;
            return ERROR_DISK_FULL;
        default:
            *problem = std::string("the system failed (") + sqlite3_errstr(result) + "): " + path;
            return ERROR_REGISTRY_IO_FAILED;
    }
}

}  // namespace juntora::registry
