#include "bench/Registry.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include <sqlite3.h>

#include "bench/Statistics.h"
#include "platform/registry/registry.h"

namespace juntora::bench {
namespace {

constexpr int KEYS = 1'000;
constexpr int ROUNDS = 200;
constexpr int CALLS = 200;
constexpr char NAME[] = "CmdLine";
constexpr char TEXT[] = "/home/me/boards/amplifier/rev 4/output.opj -readonly";

void mustHold(bool holds) {
    if (!holds) {
        throw std::runtime_error("a call of the registry failed");
    }
}

HKEY openKey(HKEY root, const std::string& path) {
    HKEY key = nullptr;
    mustHold(RegCreateKeyA(root, path.c_str(), &key) == ERROR_SUCCESS);
    return key;
}

void writeText(HKEY key) {
    mustHold(RegSetValueExA(key, NAME, REG_SZ, TEXT, sizeof TEXT) == ERROR_SUCCESS);
}

void readText(HKEY key) {
    char text[256];
    DWORD size = sizeof text;
    DWORD type = 0;
    mustHold(RegQueryValueExA(key, NAME, &type, text, &size) == ERROR_SUCCESS);
}

/// A program that reads from the same file by itself: one prepared statement, bound and run.
class PlainReader {
public:
    explicit PlainReader(const std::string& path) {
        sqlite3* connection = nullptr;
        sqlite3_open_v2(path.c_str(), &connection, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                        nullptr);
        m_connection.reset(connection);
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(connection, "SELECT id FROM key WHERE name = 'Key 500'", -1, &statement,
                           nullptr);
        m_statement.reset(statement);
        mustHold(sqlite3_step(statement) == SQLITE_ROW);
        m_key = sqlite3_column_int64(statement, 0);
        sqlite3_prepare_v2(connection, "SELECT type, data FROM value WHERE key = ?1 AND name = ?2",
                           -1, &statement, nullptr);
        m_statement.reset(statement);
    }
    void read() {
        sqlite3_stmt* statement = m_statement.get();
        sqlite3_bind_int64(statement, 1, m_key);
        sqlite3_bind_text(statement, 2, NAME, -1, SQLITE_STATIC);
        mustHold(sqlite3_step(statement) == SQLITE_ROW);
        mustHold(sqlite3_column_int(statement, 0) == static_cast<int>(REG_SZ));
        const auto* data = static_cast<const char*>(sqlite3_column_blob(statement, 1));
        m_read.assign(data, static_cast<std::size_t>(sqlite3_column_bytes(statement, 1)));
        sqlite3_reset(statement);
    }

private:
    struct Closer {
        void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    std::unique_ptr<sqlite3, Closer> m_connection;
    std::unique_ptr<sqlite3_stmt, Closer> m_statement;
    sqlite3_int64 m_key = 0;
    std::string m_read;
};

}  // namespace

void benchRegistry() {
    for (int i = 0; i < KEYS; ++i) {
        writeText(openKey(HKEY_CURRENT_USER, "Software\\Bench\\Key " + std::to_string(i)));
    }
    writeText(openKey(HKEY_LOCAL_MACHINE, "Software\\Classes\\Bench"));
    const HKEY key = openKey(HKEY_CURRENT_USER, "Software\\Bench\\Key 500");
    const HKEY merged = openKey(HKEY_CLASSES_ROOT, "Bench");
    PlainReader reader(std::string(std::getenv("JUNTORA_REGISTRY")) + "/user.db");
    Samples own;
    Samples plain;
    Samples classes;
    for (int round = 0; round < ROUNDS; ++round) {
        measureCalls(own, CALLS, [&] { readText(key); });
        measureCalls(plain, CALLS, [&] { reader.read(); });
        measureCalls(classes, CALLS, [&] { readText(merged); });
    }
    Samples writes;
    for (int round = 0; round < 10; ++round) {
        measureCalls(writes, CALLS, [&] { writeText(key); });
    }
    std::printf("A value of the registry, through an open key\n");
    printRow("read", own.median(), "us");
    printRow("read by a prepared statement of one's own", plain.median(), "us");
    printRow("read of a class that only the machine has", classes.median(), "us");
    printRow("write", writes.median(), "us");
    printRatio("of the plain read", own.median() / plain.median(), 2, true);
    RegCloseKey(key);
    RegCloseKey(merged);
}

}  // namespace juntora::bench
