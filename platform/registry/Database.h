// A connection to the file of a hive, with the statements that it keeps.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <sqlite3.h>

#include "platform/registry/HiveFile.h"
#include "platform/registry/Patience.h"

namespace juntora::registry {

/// The statements, in the order of their texts in Database.cpp.
enum class Query {
    BEGIN,
    BEGIN_READ,
    COMMIT,
    ROLLBACK,
    FIND_KEY,
    HAS_KEY,
    HAS_SUBKEY,
    ADD_KEY,
    REMOVE_KEY,
    REMOVE_VALUES,
    REMOVE_TREE,
    REMOVE_TREE_VALUES,
    FIRST_KEY,
    NEXT_KEY,
    READ_VALUE,
    WRITE_VALUE,
    REMOVE_VALUE,
    FIRST_VALUE,
    NEXT_VALUE,
    COUNT
};

/// One run of a kept statement. What is bound must outlive it; parameters and columns count from 1
/// and from 0, as SQLite has them.
class Run {
public:
    /// `prepared` is the error that there is in the place of a statement.
    Run(sqlite3_stmt* statement, int prepared) : m_statement(statement), m_prepared(prepared) {}
    ~Run() { sqlite3_reset(m_statement); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    Run& bind(int at, std::int64_t number) {
        sqlite3_bind_int64(m_statement, at, number);
        return *this;
    }
    Run& bind(int at, std::string_view text) {
        sqlite3_bind_text(m_statement, at, text.data(), static_cast<int>(text.size()),
                          SQLITE_STATIC);
        return *this;
    }
    Run& bind(int at, const void* data, std::size_t size) {
        // A blob of no bytes at a null pointer would be the null that the table refuses.
        sqlite3_bind_blob(m_statement, at, size == 0 ? "" : data, static_cast<int>(size),
                          SQLITE_STATIC);
        return *this;
    }
    /// SQLITE_ROW, SQLITE_DONE or an error.
    int step() { return m_statement == nullptr ? m_prepared : sqlite3_step(m_statement); }

    std::int64_t number(int column) const { return sqlite3_column_int64(m_statement, column); }
    std::string text(int column) const {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
        const int size = sqlite3_column_bytes(m_statement, column);
        return {bytes == nullptr ? "" : bytes, static_cast<std::size_t>(size)};
    }
    std::string_view blob(int column) const {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(m_statement, column));
        const int size = sqlite3_column_bytes(m_statement, column);
        return {bytes, static_cast<std::size_t>(size)};
    }

private:
    sqlite3_stmt* m_statement;
    int m_prepared;
};

/// To be used by one thread at a time. Each step waits for the locks of others as the hive's
/// patience has it, which must outlive the database.
class Database {
public:
    /// Opens a file that is there and has been checked.
    static DWORD open(const std::string& path, const FileIdentity& identity, Patience* patience,
                      std::unique_ptr<Database>* result, Problem* problem);
    /// Makes the file with a new hive in it, unless somebody else has made it meanwhile. It has its
    /// name only when it is whole.
    static DWORD make(HiveKind kind, const std::string& path, Patience* patience, Problem* problem);

    bool isReadOnly() const { return sqlite3_db_readonly(m_connection.get(), "main") != 0; }
    const FileIdentity& identity() const { return m_identity; }

    Run run(Query query);

    /// What a step's result means for the caller; tells a person what a person can mend.
    static DWORD errorOf(int result, const std::string& path, Problem* problem);

private:
    struct Closer {
        void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
        void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    using Connection = std::unique_ptr<sqlite3, Closer>;

    static int connect(const std::string& name, int flags, Patience* patience,
                       Connection* connection);
    int checkVersion(bool* isOurs);

    Connection m_connection;
    std::array<std::unique_ptr<sqlite3_stmt, Closer>, static_cast<std::size_t>(Query::COUNT)>
        m_statements;
    FileIdentity m_identity;
};

}  // namespace juntora::registry
